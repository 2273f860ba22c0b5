// Every function of the library, and the command that reaches it.

#include <algorithm>

#include "cli/command_tree.h"

namespace cli
{

namespace
{

struct reached_function {
    const char *name;
    const char *command;
};

// Those that the tool calls. Where several commands do, one of them stands here.
constexpr reached_function reached[] = {
    {"ruk_ipmi_init", "events watch"},
    {"ipmi_location_host_event_status", "blade status"},
    {"ipmi_location_get_vkvm_status", "blade kvm"},
    {"ipmi_location_get_vmedia_status", "blade media"},
    {"ipmi_location_get_imc_status", "blade status"},
    {"ipmi_location_enter_firmware_update", "blade firmware-update"},
    {"location_edid_information", "blade edid"},
    {"ipmi_location_read_staging", "blade staging"},
    {"ipmi_location_read_queue", "blade queue"},
    {"ipmi_location_login_access", "blade login-test"},
    {"ipmi_location_test_alert", "blade alert-test"},
    {"ipmi_location_identify_led_status", "blade identify-led"},
    {"ipmi_location_get_last_post_code", "blade post-code"},
    {"ipmi_location_chassis_control_command", "chassis power on"},
    {"ipmi_location_chassis_identify_command", "chassis identify"},
    {"ipmi_location_get_boot_options", "chassis boot-option get"},
    {"ipmi_location_set_boot_options", "chassis boot-option set"},
    {"ipmi_location_reset_to_defaults", "chassis reset-to-defaults"},
    {"imc_event_set_init", "events watch"},
    {"imc_event_set_SET", "events watch"},
    {"imc_event_set_TEST", "events watch"},
    {"imc_event_set_NEXT_ASSERTED", "events watch"},
    {"ruk_register_imc_event_set", "events watch"},
    {"get_ruk_ipmi_response", "raw"},
    {"ipmi_location_get_ext_cmd_indexed", "ext get"},
    {"ipmi_location_set_ext_cmd_indexed", "ext set"},
    {"ipmi_location_get_feature_info", "controller info"},
    {"ipmi_location_send_bexal_quon", "controller send-value"},
    {"ipmi_location_get_cpld_version", "controller info"},
    {"ipmi_location_send_zat_feature", "controller send-feature"},
    {"ipmi_location_get_auto_discovery_status", "controller discovery"},
    {"ipmi_location_get_pm_status", "controller info"},
    {"ipmi_location_get_pm_rebrand", "controller info"},
    {"ipmi_location_set_nfs_path", "file path set"},
    {"ipmi_location_set_lt_nfs_path", "file lt-path set"},
    {"ipmi_location_get_file_cp_status", "file copy-status"},
    {"ipmi_location_set_fwupdate_status", "notify fw-status"},
    {"ipmi_location_set_timeout_error", "notify timeout"},
    {"ipmi_location_set_dumplogs_status", "notify dump-logs"},
    {"ipmi_location_get_fru_info", "fru read"},
    {"ipmi_location_read_fru", "fru read"},
    {"ipmi_location_write_fru", "fru write"},
    {"ipmi_blink_unblink_serverled_kvm", "led blink"},
    {"ipmi_blink_unblink_sled_driveled", "led blink"},
    {"ipmi_set_node_power_button", "power-button lock"},
    {"ipmi_cpld_access", "cpld access"},
    {"ipmi_bexal_post_code", "post-code"},
    {"location_blade_get_miscellaneous_imc_event", "imc-event get"},
    {"ipmi_location_set_lan_parameters", "lan set"},
    {"ipmi_location_get_lan_parameters", "lan get"},
    {"ipmi_location_set_lldp_connection_info", "lldp send"},
    {"acquire_mutex", "events ring"},
    {"release_mutex", "events ring"},
    {"ipmi_location_process_zat_chassis_info", "blade chassis-info"},
    {"ipmi_process_zat_storage_info", "blade storage-info"},
    {"ipmi_location_get_power_cycle_data", "chassis power-cycles"},
    {"ipmi_location_get_power_consumption_data", "power consumption"},
    {"ipmi_location_reset_power_consumption_data", "power reset"},
    {"location_blade_power_consumption", "power draw"},
    {"ipmi_location_set_efficiency", "power efficiency"},
    {"location_power_on_response", "power response"},
    {"ipmi_location_cpu_throttling_control", "power throttle cpu"},
    {"ipmi_location_mem_throttle", "power throttle memory"},
    {"ipmi_location_get_requested_fan_speed", "power fan requested"},
    {"ipmi_location_chassis_fan_status", "power fan chassis"},
    {"get_ipmi_shm_ptr", "events ring"},
    {"put_next_interrupt", "events post"},
    {"get_next_interrupt", "events watch"},
    {"ipmi_location_get_sdr_info", "sdr info"},
    {"ipmi_location_reserve_sdr", "sdr list"},
    {"ipmi_location_get_sdr", "sdr get"},
    {"ipmi_location_set_sel_time", "sel time set"},
    {"ipmi_location_set_sel_time_offset", "sel utc-offset set"},
    {"ipmi_location_reserve_sel", "sel clear"},
    {"ipmi_location_get_sel_info", "sel info"},
    {"ipmi_location_get_sel_entry", "sel get"},
    {"ipmi_location_clear_sel", "sel clear"},
    {"ipmi_location_process_power_thermal_mgmt", "power-thermal raw"},
    {"ipmi_location_set_physical_location", "location set"},
    {"ipmi_location_get_lcd_hide_status", "lcd status"},
    {"ipmi_location_hide_lcd_messages", "lcd hide"},
    {"ipmi_location_unhide_lcd_messages", "lcd show"},
    {"ipmi_location_get_link_tuning_version", "link-tuning version"},
    {"ipmi_location_get_link_tuning_tx_status", "link-tuning tx-status"},
    {"ipmi_location_set_autothrottle_delay", "autothrottle set"},
    {"ipmi_set_sled_switch_configuration", "sled config set"},
    {"ipmi_get_sled_switch_configuration", "sled config get"},
    {"ipmi_location_get_sled_switch_link_status", "sled links"},
    {"ipmi_set_dynamic_mac_iom_map", "sled mac-map set"},
    {"ipmi_switch_config_status_to_str", "sled config get"},
    {"location_set_sys_info", "sysinfo set"},
    {"location_get_sys_info", "sysinfo get"},
    {"location_get_sys_info_ex", "sysinfo raw"},
    {"GetTimeouts", "timeouts show"},
    {"ClearTimeouts", "timeouts clear"},
    {"location_set_user_name", "user set-name"},
    {"location_set_user_password", "user set-password"},
    {"location_enable_disable_user", "user enable"},
    {"location_set_user_access", "user set-access"},
};

struct replaced_function {
    const char *name;
    const char *by;
};

// Those that another stands for. A form by the blade's number does nothing but call the one by its
// location; asynchronous commands, and the lists and events that they need, do what the exchange
// does; the texts' converters and the count of time-outs are called by those functions themselves.
constexpr replaced_function replaced[] = {
    {"ruk_ipmi_exit", "ruk_ipmi_init"},
    {"send_ruk_ipmi_command", "get_ruk_ipmi_response"},
    {"ipmi_callback_thread", "ruk_register_imc_event_set"},
    {"ipmi_host_event_status", "ipmi_location_host_event_status"},
    {"ipmi_get_vkvm_status", "ipmi_location_get_vkvm_status"},
    {"ipmi_get_vmedia_status", "ipmi_location_get_vmedia_status"},
    {"ipmi_enter_firmware_update", "ipmi_location_enter_firmware_update"},
    {"edid_information", "location_edid_information"},
    {"ipmi_read_staging", "ipmi_location_read_staging"},
    {"ipmi_read_queue", "ipmi_location_read_queue"},
    {"ipmi_login_access", "ipmi_location_login_access"},
    {"ipmi_identify_led_status", "ipmi_location_identify_led_status"},
    {"ipmi_get_last_post_code", "ipmi_location_get_last_post_code"},
    {"ipmi_chassis_control_command", "ipmi_location_chassis_control_command"},
    {"ipmi_chassis_identify_command", "ipmi_location_chassis_identify_command"},
    {"imc_event_set_CLR", "imc_event_set_init"},
    {"ipmi_location_get_ext_cmd", "ipmi_location_get_ext_cmd_indexed"},
    {"ipmi_get_ext_cmd_indexed", "ipmi_location_get_ext_cmd_indexed"},
    {"ipmi_get_ext_cmd", "ipmi_location_get_ext_cmd_indexed"},
    {"ipmi_location_set_ext_cmd", "ipmi_location_set_ext_cmd_indexed"},
    {"ipmi_set_ext_cmd_indexed", "ipmi_location_set_ext_cmd_indexed"},
    {"ipmi_set_ext_cmd", "ipmi_location_set_ext_cmd_indexed"},
    {"ipmi_get_feature_info", "ipmi_location_get_feature_info"},
    {"ipmi_send_bexal_quon", "ipmi_location_send_bexal_quon"},
    {"ipmi_get_auto_discovery_status", "ipmi_location_get_auto_discovery_status"},
    {"ipmi_get_pm_status", "ipmi_location_get_pm_status"},
    {"ipmi_get_pm_rebrand", "ipmi_location_get_pm_rebrand"},
    {"ipmi_get_fru_info", "ipmi_location_get_fru_info"},
    {"ipmi_read_fru", "ipmi_location_read_fru"},
    {"ipmi_write_fru", "ipmi_location_write_fru"},
    {"ipmi_set_lan_parameters", "ipmi_location_set_lan_parameters"},
    {"ipmi_get_lan_parameters", "ipmi_location_get_lan_parameters"},
    {"ipmi_list_init", "get_ruk_ipmi_response"},
    {"get_list_access", "get_ruk_ipmi_response"},
    {"release_list_access", "get_ruk_ipmi_response"},
    {"list_insert", "get_ruk_ipmi_response"},
    {"list_delete", "get_ruk_ipmi_response"},
    {"list_delete_and_free_data", "get_ruk_ipmi_response"},
    {"get_list_first", "get_ruk_ipmi_response"},
    {"get_list_next", "get_ruk_ipmi_response"},
    {"create_event", "ruk_register_imc_event_set"},
    {"ipmi_process_zat_chassis_info", "ipmi_location_process_zat_chassis_info"},
    {"ipmi_get_power_cycle_data", "ipmi_location_get_power_cycle_data"},
    {"ipmi_set_efficiency", "ipmi_location_set_efficiency"},
    {"ipmi_cpu_throttling_control", "ipmi_location_cpu_throttling_control"},
    {"ipmi_mem_throttle", "ipmi_location_mem_throttle"},
    {"ipmi_get_requested_fan_speed", "ipmi_location_get_requested_fan_speed"},
    {"ipmi_chassis_fan_status", "ipmi_location_chassis_fan_status"},
    {"get_shm_ptr", "get_ipmi_shm_ptr"},
    {"init_shm_ptr", "get_ipmi_shm_ptr"},
    {"ipmi_reserve_sdr", "ipmi_location_reserve_sdr"},
    {"ipmi_set_sel_time", "ipmi_location_set_sel_time"},
    {"ipmi_process_power_thermal_mgmt", "ipmi_location_process_power_thermal_mgmt"},
    {"ipmi_get_lcd_hide_status", "ipmi_location_get_lcd_hide_status"},
    {"ipmi_hide_lcd_messages", "ipmi_location_hide_lcd_messages"},
    {"ipmi_unhide_lcd_messages", "ipmi_location_unhide_lcd_messages"},
    {"set_sys_info", "location_set_sys_info"},
    {"get_sys_info", "location_get_sys_info"},
    {"UTF8_2_PrintableASCII", "location_get_sys_info"},
    {"Unicode16_2_PrintableASCII", "location_get_sys_info"},
    {"SetTimeout", "get_ruk_ipmi_response"},
    {"set_user_name", "location_set_user_name"},
    {"set_user_password", "location_set_user_password"},
    {"enable_disable_user", "location_enable_disable_user"},
    {"set_user_access", "location_set_user_access"},
};

const char *command_for(const std::string &name)
{
    const auto *const found =
        std::find_if(std::begin(reached), std::end(reached),
                     [&](const reached_function &each) { return name == each.name; });
    return found->command;
}

report list()
{
    json rows = json::array();
    for (const reached_function &each : reached)
        rows.push_back({{"function", each.name}, {"command", each.command}, {"by", nullptr}});
    for (const replaced_function &each : replaced)
        rows.push_back(
            {{"function", each.name}, {"command", command_for(each.by)}, {"by", each.by}});
    std::sort(rows.begin(), rows.end(), [](const json &one, const json &other) {
        return one["function"] < other["function"];
    });
    return tell({{"functions", rows}});
}

} // namespace

void add_functions(const noun &root)
{
    root.local_verb("functions", "List the library's functions and their commands", list);
}

} // namespace cli
