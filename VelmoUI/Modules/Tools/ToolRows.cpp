#include "VelmoUI/Modules/Tools/ToolRows.h"

#include "VelmoCore/Files/FileCategory.h"

#include <algorithm>

namespace velmo {

std::vector<ToolRow> toolRows(const std::vector<QUrl> &urls)
{
    std::vector<FileCategory> categories;
    for (const QUrl &url : urls)
        categories.push_back(FileCategories::of(url));
    const auto count = categories.size();
    const auto archives = std::size_t(std::ranges::count(categories, FileCategory::archive));
    const bool hasFile =
        std::ranges::any_of(categories, [](auto kind) { return kind != FileCategory::folder; });

    std::vector<ToolRow> rows;
    const auto add = [&](const char16_t *id, const char16_t *symbol, const char16_t *title,
                         const char16_t *purpose, bool applies = true,
                         const char16_t *reason = u"") {
        ToolRow row{.id = QString::fromUtf16(id),
                    .symbol = QString::fromUtf16(symbol),
                    .title = QString::fromUtf16(title),
                    .detail = QString::fromUtf16(applies ? purpose : reason),
                    .isEnabled = applies && count > 0};
        row.spoken = QStringLiteral("%1, %2").arg(row.title, row.detail);
        rows.push_back(row);
    };
    add(u"rename", u"pencil", u"Renomear", u"Vários de uma vez");
    add(u"duplicate", u"plus.square.on.square", u"Duplicar", u"Cópias ao lado");
    add(u"move", u"folder.badge.plus", u"Mover", u"Para outra pasta");
    add(u"organize", u"folder.badge.gearshape", u"Organizar", u"Uma pasta por tipo", hasFile,
        u"Só há pastas");
    add(u"zip", u"doc.zipper", u"Compactar", u"Em um ZIP");
    add(u"extract", u"archivebox", u"Extrair", u"Abrir o compactado",
        count > 0 && archives == count, u"Só para compactados");
    add(u"list", u"list.bullet", u"Ver conteúdo", u"Sem extrair", count == 1 && archives == 1,
        archives > 1 ? u"Só um por vez" : u"Só para compactados");
    add(u"summary", u"info.circle", u"Resumo", u"Tipo e tamanho");
    return rows;
}

} // namespace velmo
