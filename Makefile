# What a person types. Everything here first installs the Debian packages that it needs and misses.
#
#   make run        build and open the window; without a display, record three songs from the demo radio
#   make test       build everything, run all tests
#   make sanitize   the same with the address and undefined-behaviour sanitizers, without the live tests
#   make fuzz       every reader of foreign text on made-up input, SECONDS_PER_TARGET (60) each
#   make soak       SEEDS=20000 random scenarios; a seed that fails is printed
#   make soak-live  an hour (MINUTES=60) of a live recording, with a dying sound server and a full disk
#   make mutants    change MUTANTS=40 lines of ROOM=audio one at a time, list what no test notices (SEED=1)
#   make portable   compile the logic for Windows and run its tests under wine
#   make bench      build and run the measurements
#   make format     clang-format over all sources
#   make lint       clang-format and clang-tidy, findings are errors
#   make install    into PREFIX (/usr/local), below DESTDIR if given
#   make package    Debian packages, in build/release/packages
#   make clean      remove the build trees
#
# PRESET=debug builds with another preset of CMakePresets.json.

PRESET ?= release
PREFIX ?= /usr/local
SECONDS_PER_TARGET ?= 60
SEEDS ?= 20000
MINUTES ?= 60
ROOM ?= audio
MUTANTS ?= 40
SEED ?= 1
DESTDIR ?=

BUILD := build/$(PRESET)
PROGRAMS := corvetape corvetape-cli
SOURCES = $$(find src tests bench -name '*.h' -o -name '*.cpp' | sort)

CONFIGURE = cmake --preset $(1) >/dev/null
# Live tests mostly wait, so their four parts share two cores; all others run alone (cmake/Rooms.cmake).
CTEST = ctest --output-on-failure --no-tests=error --parallel 4

.PHONY: all run test sanitize fuzz soak soak-live mutants portable bench format lint install package clean

all:
	@scripts/install-deps build
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD)

run:
	@scripts/install-deps build run
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD) --target $(PROGRAMS)
	@if [ -n "$${WAYLAND_DISPLAY:-$$DISPLAY}" ]; then scripts/run-window $(BUILD); else scripts/run-demo $(BUILD); fi

test:
	@scripts/install-deps build run test
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD)
	$(CTEST) --test-dir $(BUILD)

sanitize:
	@scripts/install-deps build run test
	@$(call CONFIGURE,sanitize)
	cmake --build build/sanitize
	$(CTEST) --test-dir build/sanitize --label-exclude live

fuzz:
	@scripts/install-deps build fuzz
	@$(call CONFIGURE,fuzz)
	cmake --build build/fuzz --target fuzz-targets
	SECONDS_PER_TARGET=$(SECONDS_PER_TARGET) scripts/fuzz build/fuzz

soak:
	@scripts/install-deps build run test
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD) --target test-soak
	CORVETAPE_SEEDS=$(SEEDS) $(BUILD)/bin/test-soak

soak-live:
	@scripts/install-deps build run test
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD) --target corvetape-cli live-radio
	scripts/soak-live $(BUILD) $(MINUTES)

mutants:
	@scripts/install-deps build run test mutants
	@scripts/mutants --mutants $(MUTANTS) --seed $(SEED) $(ONLY:%=--only %) $(ROOM)

portable:
	@scripts/install-deps build portable
	@scripts/portable

bench:
	@scripts/install-deps build run bench
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD) --target benchmarks
	scripts/run-benchmarks $(BUILD)

format:
	@scripts/install-deps lint
	clang-format -i $(SOURCES)

lint:
	@scripts/install-deps build lint
	scripts/lint

install:
	@scripts/install-deps build run
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD) --target $(PROGRAMS) corvetape-browser corvetape_package_files
	DESTDIR=$(DESTDIR) cmake --install $(BUILD) --prefix $(PREFIX)

package:
	@scripts/install-deps build run package
	@$(call CONFIGURE,$(PRESET))
	cmake --build $(BUILD) --target $(PROGRAMS) corvetape-browser corvetape_package_files
	cd $(BUILD) && cpack -B packages

clean:
	rm -rf build/release build/debug build/sanitize build/coverage build/fuzz build/mingw
