# The commands of the README. Each installs what is missing, configures, builds and does its job.
.PHONY: run test bench fuzz format check-format clean

run:
	@scripts/run.sh

test:
	@scripts/test.sh

bench:
	@scripts/bench.sh

fuzz:
	@scripts/fuzz.sh

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

check-format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

clean:
	rm -rf build
