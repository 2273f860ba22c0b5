# The two commands of this project, and what they stand on.

# Configured as the packages are installed: under /usr.
BUILD := build/native
JOBS := $(shell nproc)

.PHONY: all demo test bench docs packages format clean

all:
	@scripts/install-dependencies build
	@cmake -S . -B $(BUILD) -G Ninja -DBUILD_TESTING=OFF -DCMAKE_INSTALL_PREFIX=/usr > /dev/null
	@cmake --build $(BUILD) -j $(JOBS)

# A simulated chassis and a real controller, read from the shell.
demo: all
	@scripts/install-dependencies demo
	@scripts/demo

# Every test, on every architecture.
test:
	@scripts/install-dependencies all
	@scripts/test

# What everything costs, beside its peers, in one table.
bench:
	@scripts/install-dependencies bench
	@scripts/bench

# The reference of the public headers: build/docs/html/index.html.
docs:
	@scripts/install-dependencies docs
	@scripts/reference

# The Debian packages, in build/packages.
packages: all
	@scripts/install-dependencies packages
	@rm -rf build/packages
	@cd $(BUILD) && cpack -D CPACK_OUTPUT_FILE_PREFIX=$(CURDIR)/build/packages

format:
	@scripts/install-dependencies format
	@git ls-files '*.h' '*.c' '*.cpp' | xargs clang-format -i

clean:
	@rm -rf build
