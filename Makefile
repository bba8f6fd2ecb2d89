# The front door. Every target works as the first command on a bare Debian 12.
SHELL := /bin/bash
JOBS ?= $(shell nproc)
SOAK_SHARE ?= 0.05
FUZZ_SECONDS ?= 3600

.PHONY: help demo test soak asan soak-asan fuzz format check docs bench build bootstrap package
.DEFAULT_GOAL := help

help: ## this list
	@grep -hE '^[a-z-]+:.*## ' $(MAKEFILE_LIST) | sed -E 's/:.*## /\t/' | expand -t 12

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

asan: bootstrap ## host, library and updates under the sanitizers: the quick tests, a twentieth of walk and updates
	$(call configure,asan)
	@cmake --build build/asan -j$(JOBS)
	@QELFMT_SOAK_SHARE=$(SOAK_SHARE) ctest --preset asan -L quick -j$(JOBS) --output-on-failure
	@QELFMT_SOAK_SHARE=$(SOAK_SHARE) ctest --preset asan -R '^test_(drawing|scenarios)_soak$$' -j$(JOBS) --output-on-failure

soak-asan: bootstrap ## the random walk and the updates in full under the sanitizers
	$(call configure,asan)
	@cmake --build build/asan -j$(JOBS) --target test_drawing test_scenarios
	@QELFMT_SOAK_SHARE=1 ctest --preset asan -R '^test_(drawing|scenarios)_soak$$' -j$(JOBS) --output-on-failure

fuzz: bootstrap ## an hour of damaged part files (FUZZ_SECONDS), needs clang
	@scripts/bootstrap fuzz
	@test -f build/fuzz/CMakeCache.txt || CC=clang CXX=clang++ cmake -B build/fuzz \
	  $$(command -v ninja >/dev/null && echo -G Ninja) -DCMAKE_BUILD_TYPE=Release \
	  -DQELFMT_FUZZ=ON -DQELFMT_TESTS=OFF -DQELFMT_BENCH=OFF >/dev/null
	@cmake --build build/fuzz -j$(JOBS) --target fuzz_part fuzz_part_seeds
	@build/fuzz/bin/fuzz_part_seeds build/fuzz/corpus
	@build/fuzz/bin/fuzz_part -max_total_time=$(FUZZ_SECONDS) -timeout=20 -print_final_stats=1 \
	  -artifact_prefix=build/fuzz/ build/fuzz/corpus

format: bootstrap ## format every source
	@git ls-files '*.cpp' '*.h' '*.hxx' '*.c' | xargs clang-format -i

check: build docs ## format, layering, exported names, names of the platform, reference pages
	@scripts/check-format
	@scripts/check-layering
	@scripts/check-exports build/dev/lib/libqelfmt.so
	@scripts/list-platform-names --check

docs: bootstrap ## the reference pages of the C interface: build/docs/html/index.html
	@scripts/bootstrap docs
	@scripts/make-docs build/docs

bench: bootstrap ## measure the command, the library and the host; writes docs/performance.md
	$(call configure,release)
	@cmake --build build/release -j$(JOBS) --target qelfmt_app benches
	@bench/side_by_side/measure build/release -o docs/performance.md

package: bootstrap ## Debian packages: library, headers, command
	@scripts/bootstrap package
	$(call configure,release)
	@cmake --build build/release -j$(JOBS) --target qelfmt_app shipped_definitions manual_page
	@scripts/make-docs build/release/reference
	@cd build/release && cpack --config CPackConfig.cmake -B packages
	@ls build/release/packages/*.deb
