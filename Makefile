# The commands of the README. Each installs what is missing, configures, builds and does its job.
.PHONY: run test soak bench growth fuzz tidy screenshots translations package windows test-windows format check-format clean

run:
	@scripts/run.sh

test:
	@scripts/test.sh

soak:
	@scripts/soak.sh

bench:
	@scripts/bench.sh

growth:
	@scripts/growth.sh

fuzz:
	@scripts/fuzz.sh

tidy:
	@scripts/tidy.sh

screenshots:
	@scripts/screenshots.sh

translations:
	@scripts/translations.sh

package:
	@scripts/package.sh

windows:
	@scripts/windows.sh

test-windows:
	@scripts/test_windows.sh

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

check-format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

clean:
	rm -rf build
