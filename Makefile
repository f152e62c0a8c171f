# Velmora: the two commands a fresh machine needs are `make run` and `make test`.
JOBS ?= $(shell nproc)
WIN_DIR := build/win
NATIVE_DIR := build/native
FUZZ_DIR := build/fuzz
BENCH_DIR := build/bench
BENCH_WIN_DIR := build/bench-win

.PHONY: all deps win native fuzz test run screenshot bench dist stop clean

all: win

deps:
	@tools/install-deps.sh

win: deps
	@cmake -S . -B $(WIN_DIR) -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DCMAKE_BUILD_TYPE=Release >/dev/null
	@cmake --build $(WIN_DIR) -j$(JOBS)

native: deps
	@cmake -S . -B $(NATIVE_DIR) -DCMAKE_BUILD_TYPE=Debug -DVELMORA_SANITIZE=ON >/dev/null
	@cmake --build $(NATIVE_DIR) -j$(JOBS)

fuzz: deps
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_FUZZ=ON >/dev/null
	@cmake --build $(FUZZ_DIR) -j$(JOBS)

test: win native fuzz
	@tools/run-tests.sh $(NATIVE_DIR) $(FUZZ_DIR) $(WIN_DIR)

run: win
	@tools/run-velmora.sh $(WIN_DIR)/bin

# The README's picture of the main window, taken under Wine.
screenshot: win
	@tools/main-window-shot.sh $(WIN_DIR)/bin docs/main-window.png

# Benchmarks get trees of their own (native and Windows), so build/win keeps its configuration.
bench: deps
	@cmake -S . -B $(BENCH_DIR) -DCMAKE_BUILD_TYPE=Release -DVELMORA_BENCH=ON -DVELMORA_SANITIZE=OFF >/dev/null
	@cmake --build $(BENCH_DIR) -j$(JOBS) --target velmora_benchmarks
	@cmake -S . -B $(BENCH_WIN_DIR) -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DCMAKE_BUILD_TYPE=Release \
	  -DVELMORA_BENCH=ON >/dev/null
	@cmake --build $(BENCH_WIN_DIR) -j$(JOBS) --target velmora_benchmarks
	@tools/run-benchmarks.sh $(BENCH_DIR) $(BENCH_WIN_DIR)

dist: win
	@tools/make-dist.sh $(WIN_DIR)/bin dist

# Ends the private Xvfb, Wine's server and PulseAudio (kept by VELMORA_KEEP=1 or `make run`).
stop:
	@tools/wine-down.sh

clean:
	rm -rf build dist
