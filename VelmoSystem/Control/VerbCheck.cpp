#include "VelmoSystem/Control/VerbCheck.h"

#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include <QDir>

#include <algorithm>
#include <limits>

namespace velmo {

namespace {

using Kind = VerbArgument::Kind;

QString missing(const VerbArgument &argument)
{
    switch (argument.kind) {
    case Kind::number:
        return QStringLiteral("um número");
    case Kind::file:
        return QStringLiteral("um arquivo");
    case Kind::text:
    case Kind::input:
        return argument.name;
    }
    Q_UNREACHABLE();
}

void checkNumber(const QString &name, const QString &word)
{
    const bool isDigits = !word.isEmpty() && std::ranges::all_of(word, [](QChar character) {
        return character >= u'0' && character <= u'9';
    });
    bool fits = false;
    const int number = word.toInt(&fits);
    if (!isDigits || (fits && number == 0))
        throw VerbUsageError(
            QStringLiteral("%1 é um número a partir de 1, não “%2”").arg(name, word));
    if (!fits)
        throw VerbUsageError(QStringLiteral("O número é grande demais: %1").arg(word));
}

QString absolutePath(const QString &word, const QString &folder)
{
    if (word.isEmpty())
        throw VerbUsageError(QStringLiteral("O nome de um arquivo está vazio"));
    if (word.startsWith(u"file:")) {
        const auto file = LocalFiles::fromURL(QUrl(word));
        if (!file)
            throw VerbUsageError(QStringLiteral("Não é um arquivo deste computador: %1").arg(word));
        return file->toLocalFile();
    }
    if (folder.isEmpty() && !word.startsWith(u'/'))
        throw VerbUsageError(QStringLiteral("Não é um caminho absoluto: %1").arg(word));
    return QDir::cleanPath(QDir(folder).absoluteFilePath(word));
}

/// The word as the verb gets it.
QString checkedWord(Kind kind, const QString &name, const QString &word, const QString &folder)
{
    if (kind == Kind::number)
        checkNumber(name, word);
    return kind == Kind::file ? absolutePath(word, folder) : word;
}

QString checkedOption(const VerbSyntax &syntax, const QString &name, const QString &value,
                      const QString &folder)
{
    const auto option = std::ranges::find(syntax.options, name, &VerbOption::name);
    if (option == syntax.options.end())
        throw VerbUsageError(QStringLiteral("Opção desconhecida: --%1").arg(name));
    if (option->value.isEmpty() && !value.isEmpty())
        throw VerbUsageError(QStringLiteral("--%1 não leva valor").arg(name));
    if (!option->choices.isEmpty() && !option->choices.contains(value))
        throw VerbUsageError(QStringLiteral("--%1 não pode ser “%2”, só um destes: %3")
                                 .arg(name, value, option->choices.join(QStringLiteral(", "))));
    return checkedWord(option->kind, QStringLiteral("--") + name, value, folder);
}

} // namespace

void VerbCheck::checkCount(const VerbSyntax &syntax, const QStringList &words)
{
    const auto &arguments = syntax.arguments;
    const auto count = std::size_t(words.size());
    if (count < arguments.size() && !arguments[count].isOptional)
        throw VerbUsageError(QStringLiteral("Falta %1 depois de “%2”")
                                 .arg(missing(arguments[count]), syntax.command()));
    if (count > arguments.size() && (arguments.empty() || !arguments.back().isRepeated))
        throw VerbUsageError(QStringLiteral("Argumento a mais para “%1”: %2")
                                 .arg(syntax.command(), words[qsizetype(arguments.size())]));
}

VerbCall VerbCheck::checked(const VerbSyntax &syntax, VerbCall call, const QString &folder)
{
    checkCount(syntax, call.words);
    for (qsizetype place = 0; place < call.words.size(); ++place) {
        const auto &argument =
            syntax.arguments[std::min(std::size_t(place), syntax.arguments.size() - 1)];
        call.words[place] = checkedWord(argument.kind, argument.name, call.words[place], folder);
    }
    for (auto &[name, value] : call.options)
        value = checkedOption(syntax, name, value, folder);
    return call;
}

} // namespace velmo
