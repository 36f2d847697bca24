#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Mail/IMAP/IMAPResponse.h"
#include "VelmoCore/Mail/IMAP/IMAPTokenizer.h"

#include <cstdint>
#include <cstdlib>

namespace velmo {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Writes values as a server would. A list is only closed before something follows: an atom with
/// an open bracket, which can only be the last, would take the ")" in.
class Writer {
public:
    void write(const std::vector<IMAPValue> &values)
    {
        for (const IMAPValue &value : values) {
            m_text += QByteArray(m_closers, ')') + ' ';
            m_closers = 0;
            std::visit(
                overloaded{[&](const IMAPValue::None &) { m_text += "NIL"; },
                           [&](const IMAPValue::Atom &atom) { m_text += atom.word.toUtf8(); },
                           [&](const IMAPValue::String &string) {
                               m_text += '{' + QByteArray::number(string.bytes.size()) + "}\r\n" +
                                         string.bytes;
                           },
                           [&](const IMAPValue::List &list) {
                               m_text += "(";
                               write(list.values);
                               ++m_closers;
                           }},
                value.content);
        }
    }

    const QByteArray &text() const { return m_text; }

private:
    QByteArray m_text;
    qsizetype m_closers = 0;
};

/// What was read and is written again reads the same.
void checkValues(const QByteArray &response)
{
    const auto values = IMAPTokenizer(response).values();
    Writer writer;
    writer.write(values);
    require(IMAPTokenizer(writer.text()).values() == values);
}

/// A body is a piece of the response.
void checkFetch(const QByteArray &response)
{
    const auto fetch = IMAPResponse::fetch(response);
    if (fetch && fetch->body)
        require(fetch->body->size() < response.size());
}

void checkQuote(const QByteArray &response)
{
    const QString text = QString::fromUtf8(response);
    const auto values = IMAPTokenizer(IMAPResponse::quote(text).toUtf8()).values();
    require(values == std::vector<IMAPValue>{{IMAPValue::String{text.toUtf8()}}});
}

} // namespace
} // namespace velmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QByteArray response(reinterpret_cast<const char *>(data), qsizetype(size));
    checkValues(response);
    checkFetch(response);
    checkFetch("* 1 FETCH (" + response);
    checkQuote(response);
    IMAPResponse::count(response, u"EXISTS");
    IMAPResponse::list(response);
    IMAPResponse::search(response);
    IMAPResponse::capabilities(response);
    IMAPResponse::code(u"UIDVALIDITY", response);
    IMAPResponse::parseInternalDate(QString::fromUtf8(response));
    return 0;
}
