#include "VelmoUI/Modules/Notes/NoteEditor.h"

#include "VelmoCore/Notes/NoteParsing.h"

#include <QRegularExpression>
#include <QTextDocument>

namespace velmo {

namespace {

constexpr Seconds longNoteDelay = 0.5s;
constexpr qsizetype paragraphLength = 2000;

/// Unlike the document's own plain text it keeps what doesn't break.
QString plainText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text;
}

} // namespace

/// Colours the addresses and tags of a line.
class NoteEditor::Highlighter : public QSyntaxHighlighter {
public:
    Highlighter(QTextDocument *document, const QColor &accent) : QSyntaxHighlighter(document)
    {
        m_tag.setForeground(accent);
        m_link = m_tag;
        m_link.setFontUnderline(true);
    }

protected:
    void highlightBlock(const QString &line) override
    {
        if (document()->characterCount() > longNote)
            return;
        static const QRegularExpression tag(QStringLiteral(R"((?<=^|\s)#[\p{L}\p{N}_-]{1,40})"),
                                            QRegularExpression::UseUnicodePropertiesOption);
        for (const auto &match : tag.globalMatch(line))
            setFormat(int(match.capturedStart()), int(match.capturedLength()), m_tag);
        for (const NoteParsing::Link &link : NoteParsing::linksWithPlaces(line))
            setFormat(int(link.start), int(link.length), m_link);
    }

private:
    QTextCharFormat m_tag;
    QTextCharFormat m_link;
};

NoteEditor::NoteEditor(Scheduler &scheduler, std::function<void(const QString &)> edited)
    : m_scheduler(scheduler), m_edited(std::move(edited))
{
}

void NoteEditor::attach(QTextDocument *document, const QColor &accent)
{
    m_document = document;
    new Highlighter(document, accent); // the document's
    connect(document, &QTextDocument::contentsChanged, this, &NoteEditor::contentsChanged);
}

QString NoteEditor::arranged(QString text)
{
    if (text.size() <= longNote)
        return text;
    qsizetype start = 0;
    for (qsizetype end = text.indexOf(u'\n'); end >= 0; end = text.indexOf(u'\n', end + 1)) {
        if (end - start < paragraphLength)
            text[end] = QChar::LineSeparator;
        else
            start = end + 1;
    }
    return text;
}

void NoteEditor::flush()
{
    if (m_delivery.isPending())
        deliver();
}

void NoteEditor::contentsChanged()
{
    if (m_document->characterCount() > longNote)
        m_delivery = m_scheduler.after(longNoteDelay, [this] { deliver(); });
    else
        deliver();
}

void NoteEditor::deliver()
{
    m_delivery.cancel();
    if (m_document)
        m_edited(plainText(*m_document));
}

} // namespace velmo
