# The two entry points of README. Each installs what the build needs first.
PRESET ?= release

.PHONY: demo test asan bootstrap clean

bootstrap:
	@./scripts/bootstrap

demo: bootstrap
	cmake --preset $(PRESET) >/dev/null
	cmake --build --preset $(PRESET) --target ldg_cli
	./build/$(PRESET)/cli/ldg demo build/demo

test: bootstrap
	cmake --preset dev >/dev/null
	cmake --build --preset dev
	ctest --preset dev

asan: bootstrap
	cmake --preset asan >/dev/null
	cmake --build --preset asan
	ctest --preset asan

clean:
	rm -rf build
