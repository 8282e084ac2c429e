// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/path.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "foundation/exception.h"
#include "foundation/string-view.h"

namespace fn {

namespace {

StringView lastComponent(StringView path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == StringView::npos) {
        return {};
    }
    path = path.substr(0, last + 1);
    const std::size_t slash = path.find_last_of('/');
    return slash == StringView::npos ? path : path.substr(slash + 1);
}

/// Where the last extension's dot stands in a name; the name's size where there is none.
std::size_t extensionStart(StringView name) {
    const std::size_t dot = name.find_last_of('.');
    const bool isExtension = dot != StringView::npos && dot != 0 && name != "..";
    return isExtension ? dot : name.size();
}

/// Appends the components of `path`, each behind a slash.
void appendComponents(String& text, StringView path) {
    while (!path.empty()) {
        const StringView component = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(component.size() + 1, path.size()));
        if (!component.empty() && component != ".") {
            text.append("/").append(component);
        }
    }
}

String workingFolder() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    if (error) {
        throw IOException(String("Cannot tell the working folder: ") + error.message());
    }
    return folder.native();
}

}  // namespace

Path Path::parsePath(const String& text, Style /*style*/) {
    return Path(text);
}

String Path::toString(Style /*style*/) const {
    return pathText;
}

Path Path::toAbsolute() const {
    String text;
    if (pathText.empty() || pathText.front() != '/') {
        appendComponents(text, workingFolder());
    }
    appendComponents(text, pathText);
    return Path(text.empty() ? String("/") : text);
}

String Path::fileName() const {
    return String(std::string(lastComponent(pathText)));
}

String Path::baseName() const {
    const StringView name = lastComponent(pathText);
    return String(std::string(name.substr(0, extensionStart(name))));
}

String Path::extension() const {
    const StringView name = lastComponent(pathText);
    const std::size_t dot = extensionStart(name);
    return dot == name.size() ? String() : String(std::string(name.substr(dot + 1)));
}

}  // namespace fn
