// SPDX-License-Identifier: MIT
#include "desktop/text/RichText.h"
#include "tests/fuzz/Fuzz.h"

#include <QGuiApplication>
#include <QTextDocument>

void feed(std::span<const std::byte> input) {
    // A document asks the application for its fonts.
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    static const QGuiApplication application(count, arguments);
    QTextDocument document;
    desktop::showRTF(document, QByteArray(reinterpret_cast<const char*>(input.data()),
                                          static_cast<qsizetype>(input.size())));
    require(document.toPlainText().size() <= static_cast<qsizetype>(input.size()),
            "a text is no longer than its RTF");
}
