#include "VelmoUI/Modules/Notes/NoteCommands.h"

namespace velmo::NoteCommands {

namespace {

PageCommand command(QStringView id, const char16_t *title, const char16_t *symbol,
                    const char16_t *shortcut = u"")
{
    return {id.toString(), QString::fromUtf16(title), QString::fromUtf16(symbol),
            QString::fromUtf16(shortcut)};
}

PageCommand copying()
{
    return command(copy, u"Copiar", u"doc.on.doc");
}

PageCommand removal()
{
    return command(remove, u"Apagar", u"trash", u"Delete");
}

} // namespace

std::vector<PageCommand> of(const Note &note)
{
    std::vector commands{
        command(open, u"Abrir", u"square.and.pencil", u"Enter"),
        command(pin, note.isPinned ? u"Desafixar" : u"Fixar", u"pin.fill", u"Ctrl+P")};
    if (!note.text.isEmpty())
        commands.push_back(copying());
    commands.push_back(removal());
    return commands;
}

std::vector<PageCommand> of(const TaskItem &task)
{
    std::vector commands{task.isDone
                             ? command(toggle, u"Reabrir", u"circle", u"Espaço")
                             : command(toggle, u"Concluir", u"checkmark.circle.fill", u"Espaço")};
    if (!task.isDone) // a done one is reminded of no more
        commands.push_back(command(remind, u"Lembrete…", u"bell.badge"));
    commands.push_back(copying());
    commands.push_back(removal());
    return commands;
}

} // namespace velmo::NoteCommands
