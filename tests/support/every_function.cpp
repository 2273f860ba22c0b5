#include "support/every_function.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace ruk_ipmi_testing
{

uint8_t arguments::byte()
{
    if (left_ == 0)
        return 0;
    --left_;
    return *next_++;
}

uint16_t arguments::half()
{
    const uint8_t low = byte();
    return static_cast<uint16_t>(low | byte() << 8);
}

uint32_t arguments::word()
{
    const uint32_t low = half();
    return low | static_cast<uint32_t>(half()) << 16;
}

uint32_t arguments::up_to(uint32_t most)
{
    return half() % (most + 1);
}

const blade_location *arguments::location()
{
    return is_null() ? nullptr : sure_location();
}

uint8_t *arguments::block(size_t size)
{
    return is_null() ? nullptr : sure_block(size);
}

const char *arguments::text(size_t longest)
{
    return is_null() ? nullptr : sure_text(longest);
}

const blade_location *arguments::sure_location()
{
    return sure_record<blade_location>();
}

// Its content is one byte over and over, so that little is drawn.
uint8_t *arguments::sure_block(size_t size)
{
    blocks_.push_back(std::make_unique<uint8_t[]>(size));
    memset(blocks_.back().get(), size == 0 ? 0 : byte(), size);
    return blocks_.back().get();
}

const char *arguments::sure_text(size_t longest)
{
    const size_t length = up_to(static_cast<uint32_t>(longest));
    uint8_t *const text = sure_block(length + 1);
    std::replace(text, text + length, uint8_t{0}, uint8_t{'0'});
    text[length] = 0;
    return reinterpret_cast<const char *>(text);
}

namespace
{

int number(arguments &a)
{
    return static_cast<int>(a.word());
}

} // namespace

const std::vector<command_function> &command_functions()
{
    static const std::vector<command_function> all = {
        {"edid_information", [](arguments &a) { const uint32_t length = a.up_to(487); const uint8_t *data = a.sure_block(length); const auto v0 = number(a); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(edid_information(v0, v1, data, length, v4)); }},
        {"enable_disable_user", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.word(); const auto v3 = a.block(1); return static_cast<uint32_t>(enable_disable_user(v0, v1, v2, v3)); }},
        {"get_sys_info", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.record<sys_info_value>(); return static_cast<uint32_t>(get_sys_info(v0, v1, v2)); }},
        {"ipmi_bexal_post_code", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(4); const auto v2 = a.block(17); return static_cast<uint32_t>(ipmi_bexal_post_code(v0, v1, v2)); }},
        {"ipmi_blink_unblink_serverled_kvm", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.word(); return static_cast<uint32_t>(ipmi_blink_unblink_serverled_kvm(v0, v1)); }},
        {"ipmi_blink_unblink_sled_driveled", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.word(); return static_cast<uint32_t>(ipmi_blink_unblink_sled_driveled(v0, v1)); }},
        {"ipmi_chassis_control_command", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_chassis_control_command(v0, v1, v2)); }},
        {"ipmi_chassis_fan_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.record<uint16_t>(); return static_cast<uint32_t>(ipmi_chassis_fan_status(v0, v1, v2)); }},
        {"ipmi_chassis_identify_command", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.block(1); return static_cast<uint32_t>(ipmi_chassis_identify_command(v0, v1, v2, v3)); }},
        {"ipmi_cpld_access", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(10); const auto v2 = a.record<uint32_t>(); return static_cast<uint32_t>(ipmi_cpld_access(v0, v1, v2)); }},
        {"ipmi_cpu_throttling_control", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.block(3); return static_cast<uint32_t>(ipmi_cpu_throttling_control(v0, v1, v2)); }},
        {"ipmi_enter_firmware_update", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(1); return static_cast<uint32_t>(ipmi_enter_firmware_update(v0, v1)); }},
        {"ipmi_get_auto_discovery_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(10); return static_cast<uint32_t>(ipmi_get_auto_discovery_status(v0, v1)); }},
        {"ipmi_get_ext_cmd", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.record<ext_cmd_data>(); return static_cast<uint32_t>(ipmi_get_ext_cmd(v0, v1, v2)); }},
        {"ipmi_get_ext_cmd_indexed", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.record<ext_cmd_data>(); return static_cast<uint32_t>(ipmi_get_ext_cmd_indexed(v0, v1, v2, v3)); }},
        {"ipmi_get_feature_info", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(7); return static_cast<uint32_t>(ipmi_get_feature_info(v0, v1)); }},
        {"ipmi_get_fru_info", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.record<fru_area_info>(); return static_cast<uint32_t>(ipmi_get_fru_info(v0, v1, v2)); }},
        {"ipmi_get_lan_parameters", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.record<lan_parameter_data>(); return static_cast<uint32_t>(ipmi_get_lan_parameters(v0, v1, v2)); }},
        {"ipmi_get_last_post_code", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(131); return static_cast<uint32_t>(ipmi_get_last_post_code(v0, v1)); }},
        {"ipmi_get_lcd_hide_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(1); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_get_lcd_hide_status(v0, v1, v2)); }},
        {"ipmi_get_pm_rebrand", [](arguments &a) {  const auto v0 = number(a); const auto v1 = reinterpret_cast<char *>(a.sure_block(15)); return static_cast<uint32_t>(ipmi_get_pm_rebrand(v0, v1)); }},
        {"ipmi_get_pm_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.sure_block(1); return static_cast<uint32_t>(ipmi_get_pm_status(v0, v1)); }},
        {"ipmi_get_power_cycle_data", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.record<power_cycle_data>(); return static_cast<uint32_t>(ipmi_get_power_cycle_data(v0, v1)); }},
        {"ipmi_get_requested_fan_speed", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(3); return static_cast<uint32_t>(ipmi_get_requested_fan_speed(v0, v1)); }},
        {"ipmi_get_sled_switch_configuration", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<sled_switch_config>(); return static_cast<uint32_t>(ipmi_get_sled_switch_configuration(v0, v1)); }},
        {"ipmi_get_vkvm_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(7); return static_cast<uint32_t>(ipmi_get_vkvm_status(v0, v1)); }},
        {"ipmi_get_vmedia_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(5); return static_cast<uint32_t>(ipmi_get_vmedia_status(v0, v1)); }},
        {"ipmi_hide_lcd_messages", [](arguments &a) {  const auto v0 = number(a); return static_cast<uint32_t>(ipmi_hide_lcd_messages(v0)); }},
        {"ipmi_host_event_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(6); return static_cast<uint32_t>(ipmi_host_event_status(v0, v1)); }},
        {"ipmi_identify_led_status", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(2); return static_cast<uint32_t>(ipmi_identify_led_status(v0, v1)); }},
        {"ipmi_location_chassis_control_command", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_chassis_control_command(v0, v1, v2)); }},
        {"ipmi_location_chassis_fan_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.record<uint16_t>(); return static_cast<uint32_t>(ipmi_location_chassis_fan_status(v0, v1, v2)); }},
        {"ipmi_location_chassis_identify_command", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.block(1); return static_cast<uint32_t>(ipmi_location_chassis_identify_command(v0, v1, v2, v3)); }},
        {"ipmi_location_clear_sel", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.half(); const auto v2 = a.byte(); const auto v3 = a.record<sel_clear_status>(); return static_cast<uint32_t>(ipmi_location_clear_sel(v0, v1, v2, v3)); }},
        {"ipmi_location_cpu_throttling_control", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.byte(); const auto v2 = a.block(3); return static_cast<uint32_t>(ipmi_location_cpu_throttling_control(v0, v1, v2)); }},
        {"ipmi_location_enter_firmware_update", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(1); return static_cast<uint32_t>(ipmi_location_enter_firmware_update(v0, v1)); }},
        {"ipmi_location_get_auto_discovery_status", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.block(10); return static_cast<uint32_t>(ipmi_location_get_auto_discovery_status(v0, v1)); }},
        {"ipmi_location_get_boot_options", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.byte(); const auto v4 = a.record<boot_options_data>(); return static_cast<uint32_t>(ipmi_location_get_boot_options(v0, v1, v2, v3, v4)); }},
        {"ipmi_location_get_cpld_version", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(6); return static_cast<uint32_t>(ipmi_location_get_cpld_version(v0, v1)); }},
        {"ipmi_location_get_ext_cmd", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.record<ext_cmd_data>(); return static_cast<uint32_t>(ipmi_location_get_ext_cmd(v0, v1, v2)); }},
        {"ipmi_location_get_ext_cmd_indexed", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.record<ext_cmd_data>(); return static_cast<uint32_t>(ipmi_location_get_ext_cmd_indexed(v0, v1, v2, v3)); }},
        {"ipmi_location_get_feature_info", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(7); return static_cast<uint32_t>(ipmi_location_get_feature_info(v0, v1)); }},
        {"ipmi_location_get_file_cp_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.record<char>(); return static_cast<uint32_t>(ipmi_location_get_file_cp_status(v0, v1, v2)); }},
        {"ipmi_location_get_fru_info", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.record<fru_area_info>(); return static_cast<uint32_t>(ipmi_location_get_fru_info(v0, v1, v2)); }},
        {"ipmi_location_get_imc_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(7); return static_cast<uint32_t>(ipmi_location_get_imc_status(v0, v1)); }},
        {"ipmi_location_get_lan_parameters", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.record<lan_parameter_data>(); return static_cast<uint32_t>(ipmi_location_get_lan_parameters(v0, v1, v2)); }},
        {"ipmi_location_get_last_post_code", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.block(131); return static_cast<uint32_t>(ipmi_location_get_last_post_code(v0, v1)); }},
        {"ipmi_location_get_lcd_hide_status", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.block(1); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_get_lcd_hide_status(v0, v1, v2)); }},
        {"ipmi_location_get_link_tuning_tx_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(1); return static_cast<uint32_t>(ipmi_location_get_link_tuning_tx_status(v0, v1)); }},
        {"ipmi_location_get_link_tuning_version", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<uint32_t>(); const auto v2 = a.record<uint32_t>(); const auto v3 = a.sure_block(1); return static_cast<uint32_t>(ipmi_location_get_link_tuning_version(v0, v1, v2, v3)); }},
        {"ipmi_location_get_pm_rebrand", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = reinterpret_cast<char *>(a.sure_block(15)); return static_cast<uint32_t>(ipmi_location_get_pm_rebrand(v0, v1)); }},
        {"ipmi_location_get_pm_status", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.sure_block(1); return static_cast<uint32_t>(ipmi_location_get_pm_status(v0, v1)); }},
        {"ipmi_location_get_power_consumption_data", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.record<power_consumption_data>(); return static_cast<uint32_t>(ipmi_location_get_power_consumption_data(v0, v1, v2, v3)); }},
        {"ipmi_location_get_power_cycle_data", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<power_cycle_data>(); return static_cast<uint32_t>(ipmi_location_get_power_cycle_data(v0, v1)); }},
        {"ipmi_location_get_requested_fan_speed", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(3); return static_cast<uint32_t>(ipmi_location_get_requested_fan_speed(v0, v1)); }},
        {"ipmi_location_get_sdr", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.half(); const auto v2 = a.half(); const auto v3 = a.record<sdr_record>(); return static_cast<uint32_t>(ipmi_location_get_sdr(v0, v1, v2, v3)); }},
        {"ipmi_location_get_sdr_info", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<sdr_repository_info>(); return static_cast<uint32_t>(ipmi_location_get_sdr_info(v0, v1)); }},
        {"ipmi_location_get_sel_entry", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.half(); const auto v2 = a.record<sel_entry>(); return static_cast<uint32_t>(ipmi_location_get_sel_entry(v0, v1, v2)); }},
        {"ipmi_location_get_sel_info", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<sel_info>(); return static_cast<uint32_t>(ipmi_location_get_sel_info(v0, v1)); }},
        {"ipmi_location_get_sled_switch_link_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(1); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_get_sled_switch_link_status(v0, v1, v2)); }},
        {"ipmi_location_get_vkvm_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(7); return static_cast<uint32_t>(ipmi_location_get_vkvm_status(v0, v1)); }},
        {"ipmi_location_get_vmedia_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(5); return static_cast<uint32_t>(ipmi_location_get_vmedia_status(v0, v1)); }},
        {"ipmi_location_hide_lcd_messages", [](arguments &a) {  const auto v0 = a.sure_location(); return static_cast<uint32_t>(ipmi_location_hide_lcd_messages(v0)); }},
        {"ipmi_location_host_event_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(6); return static_cast<uint32_t>(ipmi_location_host_event_status(v0, v1)); }},
        {"ipmi_location_identify_led_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(2); return static_cast<uint32_t>(ipmi_location_identify_led_status(v0, v1)); }},
        {"ipmi_location_login_access", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.sure_text(40); const auto v2 = a.sure_text(40); const auto v3 = a.block(6); return static_cast<uint32_t>(ipmi_location_login_access(v0, v1, v2, v3)); }},
        {"ipmi_location_mem_throttle", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_mem_throttle(v0, v1, v2)); }},
        {"ipmi_location_process_power_thermal_mgmt", [](arguments &a) { auto *request = a.sure_record<power_thermal_request>(); request->len = static_cast<uint16_t>(a.up_to(482)); const auto v0 = a.location(); const auto v2 = a.block(10); return static_cast<uint32_t>(ipmi_location_process_power_thermal_mgmt(v0, request, v2)); }},
        {"ipmi_location_process_zat_chassis_info", [](arguments &a) { const auto length = static_cast<int>(a.up_to(488)); const uint8_t *data = a.sure_block(std::max<size_t>(static_cast<size_t>(length), 6)); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v5 = a.block(134); return static_cast<uint32_t>(ipmi_location_process_zat_chassis_info(v0, v1, v2, length, data, v5)); }},
        {"ipmi_location_read_fru", [](arguments &a) { const uint32_t capacity = a.up_to(300); fru_read_request read{}; read.buffer = a.sure_block(capacity); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.half(); const auto v3 = a.byte(); const auto v5 = a.byte() == 0xFF ? nullptr : &read; return static_cast<uint32_t>(ipmi_location_read_fru(v0, v1, v2, v3, capacity, v5)); }},
        {"ipmi_location_read_queue", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.block(257); return static_cast<uint32_t>(ipmi_location_read_queue(v0, v1, v2, v3)); }},
        {"ipmi_location_read_staging", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.block(257); return static_cast<uint32_t>(ipmi_location_read_staging(v0, v1, v2)); }},
        {"ipmi_location_reserve_sdr", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.record<sdr_reservation>(); return static_cast<uint32_t>(ipmi_location_reserve_sdr(v0, v1)); }},
        {"ipmi_location_reserve_sel", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<sel_reservation>(); return static_cast<uint32_t>(ipmi_location_reserve_sel(v0, v1)); }},
        {"ipmi_location_reset_power_consumption_data", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_location_reset_power_consumption_data(v0, v1, v2, v3, v4)); }},
        {"ipmi_location_reset_to_defaults", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_reset_to_defaults(v0, v1, v2)); }},
        {"ipmi_location_send_bexal_quon", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(6); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_send_bexal_quon(v0, v1, v2)); }},
        {"ipmi_location_send_zat_feature", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.block(8); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_send_zat_feature(v0, v1, v2)); }},
        {"ipmi_location_set_autothrottle_delay", [](arguments &a) {  const auto v0 = a.location(); return static_cast<uint32_t>(ipmi_location_set_autothrottle_delay(v0)); }},
        {"ipmi_location_set_boot_options", [](arguments &a) { const uint32_t length = a.up_to(487); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_boot_options(v0, v1, data, length, v4)); }},
        {"ipmi_location_set_dumplogs_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); return static_cast<uint32_t>(ipmi_location_set_dumplogs_status(v0, v1)); }},
        {"ipmi_location_set_efficiency", [](arguments &a) { float efficiency = 0; const uint32_t bits = a.word(); memcpy(&efficiency, &bits, sizeof bits); const auto v0 = a.sure_location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_efficiency(v0, v1, v2, efficiency, v4)); }},
        {"ipmi_location_set_ext_cmd", [](arguments &a) { const uint32_t length = a.up_to(2000); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_ext_cmd(v0, v1, data, length, v4)); }},
        {"ipmi_location_set_ext_cmd_indexed", [](arguments &a) { const uint32_t length = a.up_to(2000); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v5 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_ext_cmd_indexed(v0, v1, v2, data, length, v5)); }},
        {"ipmi_location_set_fwupdate_status", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); return static_cast<uint32_t>(ipmi_location_set_fwupdate_status(v0, v1)); }},
        {"ipmi_location_set_lan_parameters", [](arguments &a) { const uint32_t length = a.up_to(300); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_lan_parameters(v0, v1, data, length, v4)); }},
        {"ipmi_location_set_lldp_connection_info", [](arguments &a) { const uint32_t length = a.up_to(2000); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); return static_cast<uint32_t>(ipmi_location_set_lldp_connection_info(v0, data, static_cast<uint16_t>(length))); }},
        {"ipmi_location_set_lt_nfs_path", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.text(40); return static_cast<uint32_t>(ipmi_location_set_lt_nfs_path(v0, v1)); }},
        {"ipmi_location_set_nfs_path", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.text(40); return static_cast<uint32_t>(ipmi_location_set_nfs_path(v0, v1, v2)); }},
        {"ipmi_location_set_physical_location", [](arguments &a) { static constexpr uint32_t known[] = {637, 706, 633, 205, 600, 513}; const uint32_t which = a.byte(); const uint32_t attribute = which < std::size(known) ? known[which] : a.word(); const auto v0 = a.sure_location(); const auto v1 = a.byte(); const auto v3 = a.sure_text(128); return static_cast<uint32_t>(ipmi_location_set_physical_location(v0, v1, attribute, v3)); }},
        {"ipmi_location_set_sel_time", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.word(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_sel_time(v0, v1, v2)); }},
        {"ipmi_location_set_sel_time_offset", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = static_cast<int>(a.word()); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_location_set_sel_time_offset(v0, v1, v2)); }},
        {"ipmi_location_set_timeout_error", [](arguments &a) {  const auto v0 = a.location(); return static_cast<uint32_t>(ipmi_location_set_timeout_error(v0)); }},
        {"ipmi_location_test_alert", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.byte(); const auto v2 = a.sure_block(4); const auto v3 = a.block(1); return static_cast<uint32_t>(ipmi_location_test_alert(v0, v1, v2, v3)); }},
        {"ipmi_location_unhide_lcd_messages", [](arguments &a) {  const auto v0 = a.sure_location(); return static_cast<uint32_t>(ipmi_location_unhide_lcd_messages(v0)); }},
        {"ipmi_location_write_fru", [](arguments &a) { const uint32_t length = a.up_to(300); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.half(); const auto v5 = a.block(1); return static_cast<uint32_t>(ipmi_location_write_fru(v0, v1, v2, length, data, v5)); }},
        {"ipmi_login_access", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.sure_text(40); const auto v2 = a.sure_text(40); const auto v3 = a.block(6); return static_cast<uint32_t>(ipmi_login_access(v0, v1, v2, v3)); }},
        {"ipmi_mem_throttle", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_mem_throttle(v0, v1, v2)); }},
        {"ipmi_process_power_thermal_mgmt", [](arguments &a) { auto *request = a.sure_record<power_thermal_request>(); request->len = static_cast<uint16_t>(a.up_to(482)); const auto v0 = number(a); const auto v2 = a.block(10); return static_cast<uint32_t>(ipmi_process_power_thermal_mgmt(v0, request, v2)); }},
        {"ipmi_process_zat_chassis_info", [](arguments &a) { const auto length = static_cast<int>(a.up_to(488)); const uint8_t *data = a.sure_block(std::max<size_t>(static_cast<size_t>(length), 6)); const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v5 = a.block(134); return static_cast<uint32_t>(ipmi_process_zat_chassis_info(v0, v1, v2, length, data, v5)); }},
        {"ipmi_process_zat_storage_info", [](arguments &a) { const auto length = static_cast<int>(a.up_to(488)); const uint8_t *data = a.sure_block(std::max<size_t>(static_cast<size_t>(length), 6)); const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v5 = a.block(262); return static_cast<uint32_t>(ipmi_process_zat_storage_info(v0, v1, v2, length, data, v5)); }},
        {"ipmi_read_fru", [](arguments &a) { const uint32_t capacity = a.up_to(300); fru_read_request read{}; read.buffer = a.sure_block(capacity); const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.half(); const auto v3 = a.byte(); const auto v5 = a.byte() == 0xFF ? nullptr : &read; return static_cast<uint32_t>(ipmi_read_fru(v0, v1, v2, v3, capacity, v5)); }},
        {"ipmi_read_queue", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.block(257); return static_cast<uint32_t>(ipmi_read_queue(v0, v1, v2, v3)); }},
        {"ipmi_read_staging", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.block(257); return static_cast<uint32_t>(ipmi_read_staging(v0, v1, v2)); }},
        {"ipmi_reserve_sdr", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.record<sdr_reservation>(); return static_cast<uint32_t>(ipmi_reserve_sdr(v0, v1)); }},
        {"ipmi_send_bexal_quon", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.block(6); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_send_bexal_quon(v0, v1, v2)); }},
        {"ipmi_set_dynamic_mac_iom_map", [](arguments &a) { const uint32_t length = a.up_to(200); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); return static_cast<uint32_t>(ipmi_set_dynamic_mac_iom_map(v0, v1, data, length)); }},
        {"ipmi_set_efficiency", [](arguments &a) { float efficiency = 0; const uint32_t bits = a.word(); memcpy(&efficiency, &bits, sizeof bits); const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_set_efficiency(v0, v1, v2, efficiency, v4)); }},
        {"ipmi_set_ext_cmd", [](arguments &a) { const uint32_t length = a.up_to(2000); const uint8_t *data = a.sure_block(length); const auto v0 = number(a); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_set_ext_cmd(v0, v1, data, length, v4)); }},
        {"ipmi_set_ext_cmd_indexed", [](arguments &a) { const uint32_t length = a.up_to(2000); const uint8_t *data = a.sure_block(length); const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v5 = a.block(1); return static_cast<uint32_t>(ipmi_set_ext_cmd_indexed(v0, v1, v2, data, length, v5)); }},
        {"ipmi_set_lan_parameters", [](arguments &a) { const uint32_t length = a.up_to(300); const uint8_t *data = a.sure_block(length); const auto v0 = number(a); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(ipmi_set_lan_parameters(v0, v1, data, length, v4)); }},
        {"ipmi_set_node_power_button", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.word(); return static_cast<uint32_t>(ipmi_set_node_power_button(v0, v1)); }},
        {"ipmi_set_sel_time", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.word(); const auto v2 = a.block(1); return static_cast<uint32_t>(ipmi_set_sel_time(v0, v1, v2)); }},
        {"ipmi_set_sled_switch_configuration", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<sled_switch_config>(); return static_cast<uint32_t>(ipmi_set_sled_switch_configuration(v0, v1)); }},
        {"ipmi_unhide_lcd_messages", [](arguments &a) {  const auto v0 = number(a); return static_cast<uint32_t>(ipmi_unhide_lcd_messages(v0)); }},
        {"ipmi_write_fru", [](arguments &a) { const uint32_t length = a.up_to(300); const uint8_t *data = a.sure_block(length); const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.half(); const auto v5 = a.block(1); return static_cast<uint32_t>(ipmi_write_fru(v0, v1, v2, length, data, v5)); }},
        {"location_blade_get_miscellaneous_imc_event", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.sure_record<misc_imc_event>(); return static_cast<uint32_t>(location_blade_get_miscellaneous_imc_event(v0, v1)); }},
        {"location_blade_power_consumption", [](arguments &a) {  const auto v0 = a.sure_location(); const auto v1 = a.block(14); return static_cast<uint32_t>(location_blade_power_consumption(v0, v1)); }},
        {"location_edid_information", [](arguments &a) { const uint32_t length = a.up_to(487); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(location_edid_information(v0, v1, data, length, v4)); }},
        {"location_enable_disable_user", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.word(); const auto v3 = a.block(1); return static_cast<uint32_t>(location_enable_disable_user(v0, v1, v2, v3)); }},
        {"location_get_sys_info", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.record<sys_info_value>(); return static_cast<uint32_t>(location_get_sys_info(v0, v1, v2)); }},
        {"location_get_sys_info_ex", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.record<sys_info_param>(); return static_cast<uint32_t>(location_get_sys_info_ex(v0, v1)); }},
        {"location_power_on_response", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.half(); const auto v4 = a.byte(); const auto v5 = a.byte(); const auto v6 = a.record<uint16_t>(); return static_cast<uint32_t>(location_power_on_response(v0, v1, v2, v3, v4, v5, v6)); }},
        {"location_set_sys_info", [](arguments &a) { const uint32_t length = a.up_to(486); const uint8_t *data = a.sure_block(length); const auto v0 = a.location(); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(location_set_sys_info(v0, v1, data, length, v4)); }},
        {"location_set_user_access", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(location_set_user_access(v0, v1, v2, v3, v4)); }},
        {"location_set_user_name", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.sure_text(40); const auto v3 = a.block(1); return static_cast<uint32_t>(location_set_user_name(v0, v1, v2, v3)); }},
        {"location_set_user_password", [](arguments &a) {  const auto v0 = a.location(); const auto v1 = a.byte(); const auto v2 = a.sure_text(40); const auto v3 = a.block(1); return static_cast<uint32_t>(location_set_user_password(v0, v1, v2, v3)); }},
        {"set_sys_info", [](arguments &a) { const uint32_t length = a.up_to(486); const uint8_t *data = a.sure_block(length); const auto v0 = number(a); const auto v1 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(set_sys_info(v0, v1, data, length, v4)); }},
        {"set_user_access", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.byte(); const auto v3 = a.byte(); const auto v4 = a.block(1); return static_cast<uint32_t>(set_user_access(v0, v1, v2, v3, v4)); }},
        {"set_user_name", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.sure_text(40); const auto v3 = a.block(1); return static_cast<uint32_t>(set_user_name(v0, v1, v2, v3)); }},
        {"set_user_password", [](arguments &a) {  const auto v0 = number(a); const auto v1 = a.byte(); const auto v2 = a.sure_text(40); const auto v3 = a.block(1); return static_cast<uint32_t>(set_user_password(v0, v1, v2, v3)); }},
    };
    return all;
}

} // namespace ruk_ipmi_testing
