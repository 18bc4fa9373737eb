#!/usr/bin/env bash
# Installs what is missing and writes the documentation as pages, build/docs/html/index.html: every function, record and
# constant of the headers, and a page for each calculation and candlestick pattern. A warning is an error.
source "$(dirname "$0")/prepare.sh"
prepare_or_skip "pages" "${build_packages[@]}" doxygen python3 || exit 0
build_programs

pages=build/docs/calculations
rm -rf build/docs
mkdir -p build/docs
python3 scripts/make_pages.py --pictures build/release/cli/qv build/release/libQVLIB60.so "$pages"
QV_VERSION=$(sed -nE 's/^#define QVLIB60_VERSION_[A-Z]+ +([0-9]+)$/\1/p' include/qvlib60/version.h | paste -sd.) \
  QV_OUTPUT=build/docs QV_PAGES=$pages doxygen docs/doxygen/Doxyfile
echo "$(find build/docs/html -name '*.html' | wc -l) pages: build/docs/html/index.html"
