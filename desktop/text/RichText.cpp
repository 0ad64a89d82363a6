// SPDX-License-Identifier: MIT
#include "desktop/text/RichText.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <optional>
#include <string_view>
#include <vector>

namespace desktop {

namespace {

/// RTF gives lengths in twentieths of a point and font sizes in half-points.
constexpr double twipsInAPoint = 20;
constexpr double halfPoints = 2;
constexpr std::size_t deepestGroup = 100;

/// Groups whose content is not shown.
constexpr std::string_view hiddenGroups[] = {"fonttbl", "colortbl", "stylesheet", "info"};

/// The characters from 0x80 to 0x9f; unassigned codes are as in Latin-1.
constexpr char16_t windows1252Signs[] = u"\u20ac\u0081\u201a\u0192\u201e\u2026\u2020\u2021\u02c6"
                                        u"\u2030\u0160\u2039\u0152\u008d\u017d\u008f"
                                        u"\u0090\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc"
                                        u"\u2122\u0161\u203a\u0153\u009d\u017e\u0178";

QChar windows1252(int code) {
    const bool isSign = code >= 0x80 && code < 0xa0;
    return isSign ? QChar(windows1252Signs[code - 0x80]) : QChar(static_cast<char16_t>(code));
}

/// What a group inherits; changes end with the group.
struct Style {
    QTextCharFormat letters;
    QTextBlockFormat paragraph;
    bool isHidden = false;
    /// Number of fallback characters after a character given by code, for readers that lack it.
    int substitutes = 1;
};

class Reader {
public:
    Reader(QTextDocument& document, std::string_view rtf) : cursor_(&document), rest_(rtf) {
        // The outermost group: reading stops where it ends.
        styles_.emplace_back();
        take();
    }

    void read() {
        while (!rest_.empty() && !styles_.empty()) {
            const char c = take();
            if (c == '{') {
                if (styles_.size() == deepestGroup) {
                    return;
                }
                styles_.push_back(styles_.back());
            } else if (c == '}') {
                styles_.pop_back();
            } else if (c == '\\') {
                readControl();
            } else if (c != '\n' && c != '\r') {
                put(QChar::fromLatin1(c));
            }
        }
    }

private:
    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    void readControl() {
        if (rest_.empty()) {
            return;
        }
        if (!isLetter(rest_.front())) {
            readSymbol(take());
            return;
        }
        std::size_t length = 1;
        while (length < rest_.size() && isLetter(rest_[length])) {
            ++length;
        }
        const std::string_view word = rest_.substr(0, length);
        rest_.remove_prefix(length);
        const std::optional<int> number = readNumber();
        if (!rest_.empty() && rest_.front() == ' ') {
            take();
        }
        apply(word, number);
    }

    std::optional<int> readNumber() {
        constexpr int most = 1'000'000;
        const bool isNegative = rest_.size() > 1 && rest_[0] == '-' && isDigit(rest_[1]);
        if (isNegative) {
            take();
        }
        std::optional<int> number;
        while (!rest_.empty() && isDigit(rest_.front())) {
            number = std::min(most, number.value_or(0) * 10 + (take() - '0'));
        }
        return isNegative ? -*number : number;
    }

    void readSymbol(char symbol) {
        switch (symbol) {
        case '\'': {
            const QByteArray digits(rest_.data(), std::min<qsizetype>(2, std::ssize(rest_)));
            rest_.remove_prefix(static_cast<std::size_t>(digits.size()));
            bool isCode = false;
            const int code = digits.toInt(&isCode, 16);
            if (isCode) {
                put(windows1252(code));
            }
            break;
        }
        case '*':
            styles_.back().isHidden = true;
            break;
        case '~':
            put(QChar::Nbsp);
            break;
        case '\\':
        case '{':
        case '}':
            put(QChar::fromLatin1(symbol));
            break;
        default:
            break;
        }
    }

    void apply(std::string_view word, std::optional<int> number) {
        Style& style = styles_.back();
        const bool isOn = number != 0;
        if (word == "par") {
            endParagraph();
        } else if (word == "pard") {
            style.paragraph = {};
        } else if (word == "line") {
            put(QChar::LineSeparator);
        } else if (word == "tab") {
            put(u'\t');
        } else if (word == "bullet") {
            put(u'•');
        } else if (word == "b") {
            style.letters.setFontWeight(isOn ? QFont::Bold : QFont::Normal);
        } else if (word == "i") {
            style.letters.setFontItalic(isOn);
        } else if (word == "fs" && number > 0) {
            style.letters.setFontPointSize(*number / halfPoints);
        } else if (word == "li" && number) {
            style.paragraph.setLeftMargin(*number / twipsInAPoint);
        } else if (word == "fi" && number) {
            style.paragraph.setTextIndent(*number / twipsInAPoint);
        } else if (word == "uc" && number >= 0) {
            style.substitutes = *number;
        } else if (word == "u" && number) {
            put(QChar(static_cast<char16_t>(*number)));
            skipSubstitutes(style.substitutes);
        } else if (std::ranges::find(hiddenGroups, word) != std::end(hiddenGroups)) {
            style.isHidden = true;
        }
    }

    void skipSubstitutes(int count) {
        for (; count > 0 && !rest_.empty(); --count) {
            if (rest_.front() == '{' || rest_.front() == '}') {
                return;
            }
            if (rest_.starts_with("\\'")) {
                rest_.remove_prefix(std::min<std::size_t>(4, rest_.size()));
            } else if (take() == '\\') {
                return;
            }
        }
    }

    void put(QChar character) {
        const Style& style = styles_.back();
        if (style.isHidden) {
            return;
        }
        if (paragraphEnded_) {
            paragraphEnded_ = false;
            cursor_.insertBlock();
        }
        cursor_.setBlockFormat(style.paragraph);
        cursor_.insertText(character, style.letters);
    }

    void endParagraph() {
        if (styles_.back().isHidden) {
            return;
        }
        if (paragraphEnded_) {
            cursor_.insertBlock(QTextBlockFormat());
        }
        // The next paragraph starts with its first character, so that no empty one follows the
        // last.
        paragraphEnded_ = true;
    }

    QTextCursor cursor_;
    std::string_view rest_;
    std::vector<Style> styles_;
    bool paragraphEnded_ = false;
};

} // namespace

void showRTF(QTextDocument& document, const QByteArray& rtf) {
    const std::string_view text(rtf.constData(), static_cast<std::size_t>(rtf.size()));
    if (text.starts_with("{\\rtf")) {
        document.clear();
        Reader(document, text).read();
    }
}

} // namespace desktop
