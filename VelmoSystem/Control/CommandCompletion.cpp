#include "VelmoSystem/Control/CommandCompletion.h"

#include "VelmoSystem/Control/CommandHelp.h"

#include <algorithm>

namespace velmo::CommandCompletion {

namespace {

using Table = std::vector<VerbSyntax>;

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

bool takesFiles(const VerbSyntax &verb)
{
    return std::ranges::any_of(verb.arguments, [](const VerbArgument &argument) {
        return argument.kind == VerbArgument::Kind::file;
    });
}

QStringList optionsOf(const VerbSyntax &verb)
{
    QStringList options;
    for (const VerbOption &option : verb.options)
        options.append(QStringLiteral("--") + option.name);
    if (verb.lists())
        options.append(QStringLiteral("--json"));
    return options << QStringLiteral("--help");
}

QStringList verbNames(const Table &table, const QString &noun)
{
    QStringList names;
    for (const VerbSyntax &verb : CommandHelp::verbsOf(table, noun)) {
        if (!verb.name.isEmpty())
            names.append(verb.name);
    }
    return names;
}

QStringList generalWords(const Table &table)
{
    return CommandHelp::nouns(table) << QStringLiteral("--help") << QStringLiteral("--version");
}

// bash and zsh: the same cases on the words so far. `$command` is "clipboard list" or "open".

/// Joins a noun with its verb where it has verbs; the word behind such a noun may be a verb.
QString nounCases(const Table &table)
{
    QString cases;
    for (const QString &noun : CommandHelp::nouns(table)) {
        const QStringList names = verbNames(table, noun);
        if (!names.isEmpty())
            cases += QStringLiteral("        %1)\n"
                                    "            case \"$second\" in\n"
                                    "            %2) command=\"$command $second\" ;;\n"
                                    "            *) ((place == 2)) && candidates+=(%3) ;;\n"
                                    "            esac ;;\n")
                         .arg(noun, names.join(u'|'), names.join(u' '));
    }
    return cases;
}

QString valueCases(const Table &table)
{
    QString cases;
    for (const VerbSyntax &verb : table) {
        for (const VerbOption &option : verb.options) {
            if (option.value.isEmpty())
                continue;
            const bool isFile = option.kind == VerbArgument::Kind::file;
            cases += QStringLiteral("        %1) values=(%2) wants_value=1%3 ;;\n")
                         .arg(quoted(QStringLiteral("%1 --%2").arg(verb.command(), option.name)),
                              option.choices.join(u' '),
                              isFile ? QStringLiteral(" value_files=1") : QString());
        }
    }
    return cases;
}

QString verbCases(const Table &table)
{
    QString cases;
    for (const VerbSyntax &verb : table)
        cases += QStringLiteral("        %1) switches=(%2)%3 ;;\n")
                     .arg(quoted(verb.command()), optionsOf(verb).join(u' '),
                          takesFiles(verb) ? QStringLiteral(" files=1") : QString());
    return cases;
}

/// Sets `candidates`, `switches`, `values`, `wants_value`, `value_files` and `files` from `place`,
/// `command`, `second` and `previous`.
QString lookUp(const Table &table)
{
    return QStringLiteral(R"(    if ((place == 1)); then
        candidates=(%1) files=1
    else
        case "$command" in
%2        esac
        case "$command $previous" in
%3        esac
        case "$command" in
%4        esac
    fi
)")
        .arg(generalWords(table).join(u' '), nounCases(table), valueCases(table), verbCases(table));
}

QString bash(const Table &table)
{
    return QStringLiteral(R"(# Completion of orvane for bash, made from its table of commands.
_orvane()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]-} second=${COMP_WORDS[2]-} place=$COMP_CWORD
    local candidates=() switches=() values=() wants_value= value_files= files=
    ((place == 2)) && second=
)") + lookUp(table) +
           QStringLiteral(R"(    if [[ $wants_value ]]; then
        candidates=("${values[@]}") files=$value_files
    elif [[ $current == -* ]]; then
        candidates+=("${switches[@]}")
    fi
    mapfile -t COMPREPLY < <(
        compgen -W "${candidates[*]}" -- "$current"
        [[ $files ]] && compgen -f -- "$current"
    )
    [[ $files ]] && compopt -o filenames 2>/dev/null
    return 0
}
complete -F _orvane orvane
)");
}

QString zsh(const Table &table)
{
    return QStringLiteral(R"(#compdef orvane
# Completion of orvane for zsh, made from its table of commands.
_orvane() {
    local current=$words[CURRENT] previous=$words[CURRENT-1]
    local command=$words[2] second=$words[3] files= wants_value= value_files=
    local -i place=$((CURRENT - 1))
    local -a candidates switches values
    ((place == 2)) && second=
)") + lookUp(table) +
           QStringLiteral(R"(    if [[ -n $wants_value ]]; then
        compadd -a values
        [[ -n $value_files ]] && _files
        return 0
    fi
    [[ $current == -* ]] && candidates+=($switches)
    compadd -a candidates
    [[ -n $files ]] && _files
    return 0
}
_orvane "$@"
)");
}

/// One line of fish: `words` come behind the command that `condition` names.
QString fishLine(const QString &condition, const QString &arguments, const QString &description)
{
    return QStringLiteral("complete -c orvane -n %1 %2%3\n")
        .arg(quoted(condition), arguments,
             description.isEmpty() ? QString() : QStringLiteral(" -d ") + quoted(description));
}

QString fishVerb(const VerbSyntax &verb)
{
    const QString behind = QStringLiteral("__orvane_behind %1").arg(verb.command());
    QString lines = fishLine(behind, QStringLiteral("-l help"), QStringLiteral("mostra a ajuda"));
    if (verb.lists())
        lines += fishLine(behind, QStringLiteral("-l json"), QStringLiteral("escreve JSON"));
    if (takesFiles(verb))
        lines += fishLine(behind, QStringLiteral("-F"), {});
    for (const VerbOption &option : verb.options) {
        QString arguments = QStringLiteral("-l ") + option.name;
        if (option.kind == VerbArgument::Kind::file)
            arguments += QStringLiteral(" -r -F");
        else if (!option.value.isEmpty())
            arguments += QStringLiteral(" -x -a ") + quoted(option.choices.join(u' '));
        lines += fishLine(behind, arguments, option.summary);
    }
    return lines;
}

QString fish(const Table &table)
{
    QString script =
        QStringLiteral(R"(# Completion of orvane for fish, made from its table of commands.
function __orvane_behind
    set -l words (commandline -opc)
    set -e words[1]
    set -l count (count $argv)
    test (count $words) -ge $count; and test "$words[1..$count]" = "$argv"
end
function __orvane_directly_behind
    set -l words (commandline -opc)
    set -e words[1]
    test "$words" = "$argv"
end
complete -c orvane -f
complete -c orvane -n '__orvane_directly_behind' -F
complete -c orvane -n '__orvane_directly_behind' -l help -d 'mostra a ajuda'
complete -c orvane -n '__orvane_directly_behind' -l version -d 'mostra a versão'
)");
    for (const QString &noun : CommandHelp::nouns(table)) {
        const auto verbs = CommandHelp::verbsOf(table, noun);
        script += fishLine(QStringLiteral("__orvane_directly_behind"), QStringLiteral("-a ") + noun,
                           verbs.size() == 1 ? verbs.front().summary : QString());
        for (const VerbSyntax &verb : verbs) {
            if (!verb.name.isEmpty())
                script += fishLine(QStringLiteral("__orvane_directly_behind %1").arg(noun),
                                   QStringLiteral("-a ") + verb.name, verb.summary);
            script += fishVerb(verb);
        }
    }
    return script;
}

} // namespace

QString script(const std::vector<VerbSyntax> &table, const QString &shell)
{
    if (shell == u"bash")
        return bash(table);
    return shell == u"zsh" ? zsh(table) : fish(table);
}

} // namespace velmo::CommandCompletion
