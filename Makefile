# The front door: each target is a script in Scripts/ that CI calls too. `make help` lists them.
# Options: FILTER=REGEX (names of tests), PRESET=NAME (a preset of CMakePresets.json), SEEDS, WEEKS
# and SEED (of the simulation), SINCE=REVISION (of lint).

PRESET ?= dev
FILTER ?=
SECONDS_EACH ?= 10
SEEDS ?= 100
WEEKS ?= 3
SEED ?=
SINCE ?=

.DEFAULT_GOAL := help
.PHONY: help setup build test test-quick test-one golden golden-update gallery fuzz-smoke simulate bench format lint run doctor translations

help: ## List these targets
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "  make %-15s %s\n", $$1, $$2 }' Makefile

setup: ## Install the Debian packages that are missing
	@Scripts/setup check

build: ## Build a preset (PRESET=dev)
	@Scripts/build "$(PRESET)"

test: ## Build and pass every test, once more under sanitizers
	@Scripts/test

test-quick: ## The same without sanitizers and system tests
	@Scripts/test --quick

test-one: ## Build and run the tests whose names match (FILTER=REGEX, PRESET=dev)
	@Scripts/test-one "$(FILTER)" "$(PRESET)"

golden: ## Compare with the golden texts and pictures (FILTER=REGEX)
	@Scripts/golden "$(FILTER)"

golden-update: ## Write the golden texts and pictures anew (FILTER=REGEX)
	@Scripts/golden --update "$(FILTER)"

gallery: ## Draw the README's sheet of all widgets anew
	@Scripts/gallery

fuzz-smoke: ## Run every fuzz target for a few seconds (SECONDS_EACH=10)
	@Scripts/fuzz-smoke "$(SECONDS_EACH)"

simulate: ## Simulate weeks of sampling with faults (SEEDS=100 WEEKS=3, or SEED=NUMBER to replay one)
	@Scripts/simulate --weeks "$(WEEKS)" $(if $(SEED),--seed "$(SEED)",--seeds "$(SEEDS)")

bench: ## Measure against the baselines (FILTER=REGEX)
	@Scripts/bench "$(FILTER)"

format: ## Format every file
	@Scripts/format

lint: ## Check the format, run clang-tidy over every file (SINCE=REVISION: over what changed since)
	@Scripts/lint $(if $(SINCE),--changed "$(SINCE)")

run: ## Show this machine's adapters and draw the adapter widget
	@Scripts/run

translations: ## Bring the catalogues of texts up to date with the code
	@Scripts/translations

doctor: ## Say what is missing and what this machine can do
	@Scripts/doctor
