#include "dicom/Iso2022.h"

#include "dicom/Utf8.h"
#include "platform/io/TextEncoding.h"

#include <array>

namespace cinedisc::dicom {

namespace {

enum class Lower { Ascii, Kanji, SupplementaryKanji };

struct Escape {
    std::string_view sequence;  ///< behind the escape character
    bool forUpperHalf;
    Lower lower;
    const char* upper;
};

constexpr Escape lowerHalf(std::string_view sequence, Lower meaning) {
    return {sequence, false, meaning, nullptr};
}
constexpr Escape upperHalf(std::string_view sequence, const char* encoding) {
    return {sequence, true, Lower::Ascii, encoding};
}

// JIS X 0201's Latin letters are taken for ASCII: they differ in the yen sign and the overline only.
constexpr auto escapes = std::to_array<Escape>({
    lowerHalf("(B", Lower::Ascii),
    lowerHalf("(J", Lower::Ascii),
    lowerHalf("$B", Lower::Kanji),
    lowerHalf("$@", Lower::Kanji),
    lowerHalf("$(D", Lower::SupplementaryKanji),
    upperHalf(")I", halfWidthKana),
    upperHalf("$)C", "EUC-KR"),
    upperHalf("$)A", "GB2312"),
    upperHalf("-A", latin1),
    upperHalf("-B", "ISO-8859-2"),
    upperHalf("-C", "ISO-8859-3"),
    upperHalf("-D", "ISO-8859-4"),
    upperHalf("-L", "ISO-8859-5"),
    upperHalf("-G", "ISO-8859-6"),
    upperHalf("-F", "ISO-8859-7"),
    upperHalf("-H", "ISO-8859-8"),
    upperHalf("-M", "ISO-8859-9"),
    upperHalf("-b", "ISO-8859-15"),
    upperHalf("-T", "TIS-620"),
});

class Decoder {
  public:
    Decoder(std::string_view bytes, const char* upper, std::string_view delimiters)
        : rest_(bytes), initialUpper_(upper), upper_(upper), delimiters_(delimiters) {}

    std::string run() {
        while (!rest_.empty()) {
            if (rest_.front() == '\x1B')
                escape();
            else if (static_cast<unsigned char>(rest_.front()) >= 0x80)
                flushAs(upper_, upperRun());
            else if (lower_ != Lower::Ascii && rest_.front() > ' ' && rest_.front() != '\x7F')
                kanji();
            else
                plainLetter();
        }
        return std::move(out_);
    }

  private:
    void escape() {
        rest_.remove_prefix(1);
        for (const Escape& known : escapes) {
            if (!rest_.starts_with(known.sequence)) continue;
            (known.forUpperHalf ? void(upper_ = known.upper) : void(lower_ = known.lower));
            return rest_.remove_prefix(known.sequence.size());
        }
    }

    void plainLetter() {
        const char letter = rest_.front();
        out_ += letter;
        rest_.remove_prefix(1);
        constexpr std::string_view lineEnds = "\r\n\f\t";
        if (lineEnds.find(letter) == std::string_view::npos &&
            delimiters_.find(letter) == std::string_view::npos)
            return;
        lower_ = Lower::Ascii;
        upper_ = initialUpper_;
    }

    std::string_view upperRun() {
        std::size_t length = 0;
        while (length < rest_.size() && static_cast<unsigned char>(rest_[length]) >= 0x80) ++length;
        const auto run = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return run;
    }

    /// Pairs of the lower half become what EUC-JP has for them.
    void kanji() {
        std::string pairs;
        while (rest_.size() >= 2 && rest_[0] > ' ' && rest_[1] > ' ') {
            if (lower_ == Lower::SupplementaryKanji) pairs += '\x8F';
            pairs += static_cast<char>(rest_[0] | 0x80);
            pairs += static_cast<char>(rest_[1] | 0x80);
            rest_.remove_prefix(2);
        }
        if (pairs.empty()) return plainLetter();
        flushAs("EUC-JP", pairs);
    }

    void flushAs(std::string_view encoding, std::string_view run) {
        if (encoding == latin1) {
            out_ += fromLatin1(run);
        } else if (encoding == halfWidthKana) {
            constexpr char32_t fullStop = 0xFF61;
            for (const char kana : run) {
                const auto code = static_cast<unsigned char>(kana);
                appendUtf8(out_, code >= 0xA1 && code <= 0xDF ? fullStop + (code - 0xA1u) : 0xFFFD);
            }
        } else {
            const auto text = decodeText(run, encoding.data());
            out_ += text ? *text : fromLatin1(run);
        }
    }

    std::string_view rest_;
    const char* initialUpper_;
    const char* upper_;
    Lower lower_ = Lower::Ascii;
    std::string_view delimiters_;
    std::string out_;
};

}  // namespace

std::string decodeIso2022(std::string_view bytes, const char* upper, std::string_view delimiters) {
    return Decoder(bytes, upper, delimiters).run();
}

}  // namespace cinedisc::dicom
