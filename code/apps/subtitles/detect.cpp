// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/exception.h"

#include "commands.h"
#include "file-failures.h"
#include "json-document.h"
#include "text-encoding.h"
#include "visible-text.h"

namespace tool {

ExitStatus detect(Console& console, const DetectOptions& options) {
    FileFailures failures(console);
    std::optional<JsonDocument> document;
    if (options.json) {
        document.emplace(console).beginArray("files");
    }
    for (const std::string& file : options.files) {
        try {
            const std::string encoding = encodingOfFile(file);
            if (document) {
                document->element({{"path", file}, {"encoding", encoding}});
            } else {
                console.write(visibleLine(file) + ": " + encoding + "\n");
            }
        } catch (const fn::Exception& exception) {
            failures.add(file, exception.displayText());
        }
    }
    if (document) {
        document->endArray();
        failures.writeTo(*document);
        document->end();
    }
    return failures.statusOr(ExitStatus::Done);
}

}  // namespace tool
