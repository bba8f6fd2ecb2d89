# The front door. Every target works as the first command on a bare Debian 12.
SHELL := /bin/bash
JOBS ?= $(shell nproc)
SOAK_SHARE ?= 0.05

.PHONY: help demo test soak asan format check bench build bootstrap package
.DEFAULT_GOAL := help

help: ## this list
	@grep -hE '^[a-z]+:.*## ' $(MAKEFILE_LIST) | sed -E 's/:.*## /\t/' | expand -t 12

bootstrap: ## install the Debian packages
	@scripts/bootstrap

# The generator is chosen after bootstrap: on a bare system ninja has only just been installed.
define configure
	@test -f build/$(1)/CMakeCache.txt || cmake --preset $(1) \
	  $$(command -v ninja >/dev/null && echo -G Ninja) >/dev/null
endef

build: bootstrap ## build everything (development preset)
	$(call configure,dev)
	@cmake --build build/dev -j$(JOBS)

demo: bootstrap ## build, stamp three sheets into one part, check them in a new process, render them
	$(call configure,release)
	@cmake --build build/release -j$(JOBS) --target qelfmt_app
	@scripts/demo build/release/bin/qelfmt

test: build ## all tests (a twentieth of the soak)
	@QELFMT_SOAK_SHARE=$(SOAK_SHARE) ctest --preset dev -j$(JOBS) --output-on-failure

soak: build ## the soak tests in full
	@QELFMT_SOAK_SHARE=1 ctest --preset dev -L soak --output-on-failure

asan: bootstrap ## the quick tests under the address and undefined-behaviour sanitizers
	$(call configure,asan)
	@cmake --build build/asan -j$(JOBS)
	@QELFMT_SOAK_SHARE=$(SOAK_SHARE) ctest --preset asan -L quick -j$(JOBS) --output-on-failure

format: bootstrap ## format every source
	@git ls-files '*.cpp' '*.h' '*.hxx' '*.c' | xargs clang-format -i

check: build ## format, layering, exported names
	@scripts/check-format
	@scripts/check-layering
	@scripts/check-exports build/dev/lib/libqelfmt.so

package: bootstrap ## Debian packages: library, headers, command
	$(call configure,release)
	@cmake --build build/release -j$(JOBS)
	@cd build/release && cpack --config CPackConfig.cmake -B packages
	@ls build/release/packages/*.deb
