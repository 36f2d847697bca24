#include "VelmoCore/Mail/LoginCodeDetector.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace velmo {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

bool isOneOf(const QUrl &url, const std::vector<MailLink> &links)
{
    return std::any_of(links.begin(), links.end(),
                       [&](const MailLink &link) { return link.url == url; });
}

/// Whether the text holds the code, which may have lost the space or hyphen between its digits.
bool holds(QString text, const QString &code)
{
    if (text.contains(code))
        return true;
    return text.remove(u' ').remove(u'-').contains(code);
}

void check(const QString &subject, const QString &text, const std::vector<MailLink> &links)
{
    const auto found = LoginCodeDetector::detect(subject, text, links);
    require(!found.url || isOneOf(*found.url, links));
    require(!found.code || (found.code->size() >= 4 && found.code->size() <= 16));
    require(!found.code || holds(subject, *found.code) || holds(text, *found.code));
}

} // namespace
} // namespace velmo

/// The first line is the subject, the second the text, the others a link's text and address in
/// turn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const auto *bytes = reinterpret_cast<const char *>(data);
    const QStringList lines = QString::fromUtf8(bytes, qsizetype(size)).split(u'\n');
    std::vector<MailLink> links;
    for (qsizetype line = 3; line < lines.size(); line += 2)
        links.push_back({lines[line - 1], QUrl(lines[line])});
    check(lines[0], lines.value(1), links);
    // As UTF-16 the same bytes have surrogates that stand alone.
    const QString units(reinterpret_cast<const QChar *>(QByteArray(bytes, qsizetype(size)).data()),
                        qsizetype(size / 2));
    check(units, QStringLiteral("code ") + units, {});
    return 0;
}
