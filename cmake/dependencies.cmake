# SPDX-License-Identifier: LGPL-2.1-or-later
#
# What the libraries are built on. Everything else (tests, benchmarks, the tool) looks for its own.
find_package(PkgConfig REQUIRED)
pkg_check_modules(GSTREAMER REQUIRED IMPORTED_TARGET gstreamer-1.0>=1.20 gstreamer-base-1.0)
# What the public headers take from GStreamer. The installed package looks for it under this name,
# which no program that uses the library has for something else.
pkg_check_modules(SUBTITLES_GSTREAMER REQUIRED IMPORTED_TARGET gstreamer-1.0>=1.20)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(UCHARDET REQUIRED IMPORTED_TARGET uchardet)
pkg_check_modules(PCRE2 REQUIRED IMPORTED_TARGET libpcre2-8)
find_package(fmt REQUIRED)
