# Two entry points: `make demo` and `make test`. Both install any Debian package that is missing,
# then configure and build. SANITIZE=1 builds everything with ASan and UBSan in build-sanitize/.
# For data source developers: `make install PREFIX=...` and `make deb`. `make cross-test ARCH=arm64`
# builds for 64-bit Arm and runs the tests under emulation.

SANITIZE ?= 0
ifeq ($(SANITIZE),1)
BUILD ?= build-sanitize
CMAKE_FLAGS += -DVMX_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
else
BUILD ?= build
endif
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

DEBIAN_PACKAGES := cmake make g++ pkg-config qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins \
    libplist-dev libsane-dev libgl-dev fonts-dejavu-core fonts-noto-cjk xvfb xauth dpkg-dev file \
    qt6-l10n-tools

.PHONY: all deps build test demo format clean bench install deb cross-deps cross-test

all: build

deps:
	@missing=""; for p in $(DEBIAN_PACKAGES); do \
	    dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	    echo "Installing missing packages:$$missing"; \
	    sudo=""; [ "$$(id -u)" -eq 0 ] || sudo=sudo; \
	    $$sudo apt-get update -qq && \
	    DEBIAN_FRONTEND=noninteractive $$sudo apt-get install -y -qq $$missing; \
	fi

$(BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

# With a display the dialog stays until closed; without one it runs under Xvfb, closes itself
# after DEMO_SECONDS and leaves a picture of itself. DEMO_ARGS adds sampleds options.
DEMO_SECONDS ?= 3
demo: build
	@if [ -n "$$DISPLAY" ] || [ -n "$$WAYLAND_DISPLAY" ]; then \
	    $(BUILD)/samples/sampleds $(DEMO_ARGS); \
	else \
	    echo "No display: running the dialog under Xvfb for $(DEMO_SECONDS) s"; \
	    xvfb-run -a $(BUILD)/samples/sampleds --close-after $(DEMO_SECONDS) \
	        --screenshot $(BUILD)/demo.png $(DEMO_ARGS); \
	fi

# The module bundle, headers, toolkit, CMake package, pkg-config file and sample data source.
PREFIX ?= /usr/local
install: build
	cmake --install $(BUILD) --prefix $(abspath $(PREFIX)) --strip

# One Debian package of the same, for /usr, into $(BUILD)/packages.
deb: build
	cd $(BUILD) && cpack -G DEB -B $(abspath $(BUILD))/packages
	@ls -l $(BUILD)/packages/*.deb

# A cross build and the test suite under user-mode emulation: make cross-test ARCH=arm64. Debian's
# arm64 architecture is added and its packages installed beside the machine's own.
ARCH ?= arm64
CROSS_BUILD := build-$(ARCH)
CROSS_PACKAGES := crossbuild-essential-$(ARCH) qt6-base-dev:$(ARCH) libplist-dev:$(ARCH) \
    libsane-dev:$(ARCH) libgl-dev:$(ARCH) qemu-user-static
cross-deps: deps
	@test -f cmake/toolchain-$(ARCH).cmake || { echo "no toolchain for $(ARCH)"; exit 2; }
	@sudo=""; [ "$$(id -u)" -eq 0 ] || sudo=sudo; \
	if ! dpkg --print-foreign-architectures | grep -qx $(ARCH); then \
	    $$sudo dpkg --add-architecture $(ARCH) && $$sudo apt-get update -qq; \
	fi; \
	missing=""; for p in $(CROSS_PACKAGES); do \
	    dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	    echo "Installing missing packages:$$missing"; \
	    DEBIAN_FRONTEND=noninteractive $$sudo apt-get install -y -qq $$missing; \
	fi

cross-test: cross-deps
	cmake -S . -B $(CROSS_BUILD) -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/toolchain-$(ARCH).cmake
	cmake --build $(CROSS_BUILD) -j $(JOBS)
	cd $(CROSS_BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

bench: build
	@for b in $(BUILD)/bench/bench_*; do [ -x "$$b" ] && "$$b"; done

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')

clean:
	rm -rf build build-sanitize build-arm64
