# Thin wrapper over CMake; everything is built out of tree in $(BUILD_DIR).
BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 60
# Fuzzing time per target within `make test`.
CHECK_FUZZ_SECONDS ?= 30
PREFIX ?= /usr/local
DESTDIR ?=
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=

LOGSIFT = $(BUILD_DIR)/logsift
MAKEFLAGS += --no-print-directory
CONFIGURE = cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLOGSIFT_WERROR=ON \
	    -DCMAKE_INSTALL_PREFIX=$(PREFIX) $(CMAKE_FLAGS)

.PHONY: all build tool demo test test-sanitize fuzz fuzz-build fuzz-check deps install package clean

all: build

# Configuring needs nothing but a compiler and CMake; without GoogleTest the
# unit tests are left out (`make test` installs it).
$(BUILD_DIR)/CMakeCache.txt:
	$(CONFIGURE)

# Everything: the tool, the test tools and every test that can be built.
build: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS)

# The two programs alone.
tool: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS) --target logsift logsift-json

# Builds the tool (and the simulated administration volume where libfuse3 is
# there), then shows it on the bundled sample files.
demo: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS) --target demo_programs
	@bash examples/demo.sh $(LOGSIFT)

# Installs what the tests need (when missing), builds with warnings as
# errors, and runs every test through CTest; then the sanitizer suite and
# the fuzz targets.
test: deps
	$(CONFIGURE) -DLOGSIFT_REQUIRE_TESTS=ON
	cmake --build $(BUILD_DIR) -j $(JOBS)
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)
	$(MAKE) test-sanitize
	$(MAKE) fuzz-check

# The whole suite again, built with AddressSanitizer and UBSan.
test-sanitize: deps
	cmake -S . -B $(SANITIZE_DIR) -DCMAKE_BUILD_TYPE=Debug -DLOGSIFT_WERROR=ON \
	    -DLOGSIFT_SANITIZE=ON -DLOGSIFT_REQUIRE_TESTS=ON $(CMAKE_FLAGS)
	cmake --build $(SANITIZE_DIR) -j $(JOBS)
	cd $(SANITIZE_DIR) && ctest --output-on-failure -j $(JOBS)

fuzz-build: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	    -DLOGSIFT_WERROR=ON -DLOGSIFT_SANITIZE=ON -DLOGSIFT_FUZZ=ON -DLOGSIFT_TESTS=OFF
	cmake --build $(FUZZ_DIR) -j $(JOBS)

# Runs every fuzz target for FUZZ_SECONDS.
fuzz: fuzz-build
	bash fuzz/run.sh fuzz $(FUZZ_DIR) $(FUZZ_SECONDS)

# Replays every committed corpus and fuzzes each target briefly.
fuzz-check: fuzz-build
	bash fuzz/run.sh check $(FUZZ_DIR) $(CHECK_FUZZ_SECONDS)

deps:
	@bash tests/install-deps.sh

# The tool (stripped), its manual page, its completion and its documents.
install: tool
	DESTDIR=$(DESTDIR) cmake --install $(BUILD_DIR) --prefix $(PREFIX) --strip --component tool

# A Debian package of the same files, installed under /usr.
package: tool
	cd $(BUILD_DIR) && cpack -G DEB

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(FUZZ_DIR)
