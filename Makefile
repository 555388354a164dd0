# Thin wrapper over CMake; everything is built out of tree in $(BUILD_DIR).
BUILD_DIR ?= build
PREFIX ?= /usr/local
DESTDIR ?=
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=

LOGSIFT = $(BUILD_DIR)/logsift

.PHONY: all build demo test deps install package clean

all: build

$(BUILD_DIR)/CMakeCache.txt:
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLOGSIFT_WERROR=ON \
	    -DCMAKE_INSTALL_PREFIX=$(PREFIX) $(CMAKE_FLAGS)

build: $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS)

# Builds the tool, then shows it on the bundled sample files.
demo: build
	@bash examples/demo.sh $(LOGSIFT)

# Installs what the tests need (when missing), builds with warnings as
# errors, and runs every test through CTest.
test: deps build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

deps:
	@bash tests/install-deps.sh

install: build
	DESTDIR=$(DESTDIR) cmake --install $(BUILD_DIR) --prefix $(PREFIX)

# A Debian package of the tool, its manual page and its completion.
package: build
	cd $(BUILD_DIR) && cpack -G DEB

clean:
	rm -rf $(BUILD_DIR)
