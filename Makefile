# Thin wrapper over CMake; everything is built out of tree in $(BUILD_DIR).
BUILD_DIR ?= build
# The sanitizer build (clang, AddressSanitizer and UBSan), which holds the
# fuzz targets too.
SANITIZE_DIR ?= build-sanitize
FUZZ_SECONDS ?= 60
# Fuzzing time per target within `make test`.
CHECK_FUZZ_SECONDS ?= 5
PREFIX ?= /usr/local
DESTDIR ?=
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=

LOGSIFT = $(BUILD_DIR)/logsift
MAKEFLAGS += --no-print-directory
CONFIGURE = cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLOGSIFT_WERROR=ON \
	    -DCMAKE_INSTALL_PREFIX=$(PREFIX) $(CMAKE_FLAGS)

.PHONY: all build tool demo check test test-sanitize fuzz fuzz-build fuzz-check deps install package clean

all: build

# Configuring needs nothing but a compiler and CMake; without GoogleTest the
# unit tests are left out (`make test` installs it).
$(BUILD_DIR)/CMakeCache.txt:
	$(CONFIGURE)

# Everything: the tool, the test tools and every test that can be built.
build: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS)

# The programs alone.
tool: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS) --target logsift logsift-json logsift-status

# Builds the tool (and the simulated administration volume where libfuse3 is
# there), then shows it on the bundled sample files. The build's messages go
# to a log, so that the demo fits a few screens; a failed build shows them.
demo:
	@mkdir -p $(BUILD_DIR)
	@echo "Building the programs (the build's messages: $(BUILD_DIR)/demo-build.log)"
	@{ [ -f $(BUILD_DIR)/CMakeCache.txt ] || $(CONFIGURE) && \
	   cmake --build $(BUILD_DIR) -j $(JOBS) --target demo_programs; } \
	   >$(BUILD_DIR)/demo-build.log 2>&1 || { tail -n 40 $(BUILD_DIR)/demo-build.log; exit 1; }
	@bash examples/demo.sh $(LOGSIFT)

# The developer's loop: builds, then runs the unit tests, the end-to-end
# cases and the checks of the build's own files (the tier "quick").
check: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS)
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS) -L quick

# The whole gate: installs what the tests need (when missing), builds with
# warnings as errors and runs every test of every tier; then the sanitizer
# build runs the unit tests, the cases and the hostile sizes again, and the
# fuzz targets replay their corpora and fuzz briefly.
test: deps
	$(CONFIGURE) -DLOGSIFT_REQUIRE_TESTS=ON
	cmake --build $(BUILD_DIR) -j $(JOBS)
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)
	$(MAKE) test-sanitize
	$(MAKE) fuzz-check

# The sanitizer build: clang with AddressSanitizer and UBSan, the fuzz
# targets beside the tests.
fuzz-build: deps
	CC=clang CXX=clang++ cmake -S . -B $(SANITIZE_DIR) -DCMAKE_BUILD_TYPE=Debug \
	    -DLOGSIFT_WERROR=ON -DLOGSIFT_SANITIZE=ON -DLOGSIFT_FUZZ=ON -DLOGSIFT_REQUIRE_TESTS=ON \
	    $(CMAKE_FLAGS)
	cmake --build $(SANITIZE_DIR) -j $(JOBS)

# The unit tests, the cases and the hostile sizes under the sanitizers
# (packaging, the demo and the terminal checks test the build, not the code).
test-sanitize: fuzz-build
	cd $(SANITIZE_DIR) && ctest --output-on-failure -j $(JOBS) -R '^(unit/|case/|resources$$)'

# Runs every fuzz target for FUZZ_SECONDS.
fuzz: fuzz-build
	bash fuzz/run.sh fuzz $(SANITIZE_DIR) $(FUZZ_SECONDS)

# Replays every committed corpus and fuzzes each target briefly.
fuzz-check: fuzz-build
	bash fuzz/run.sh check $(SANITIZE_DIR) $(CHECK_FUZZ_SECONDS)

deps:
	@bash tests/install-deps.sh

# The tool (stripped), its manual page, its completion and its documents.
install: tool
	DESTDIR=$(DESTDIR) cmake --install $(BUILD_DIR) --prefix $(PREFIX) --strip --component tool

# A Debian package of the same files, installed under /usr.
package: tool
	cd $(BUILD_DIR) && cpack -G DEB

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR)
