#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoUI/Modules/ModuleRegistry.h"

namespace velmo {

class FakeModule : public NotchModule {
public:
    explicit FakeModule(const QString &id) : m_id(id) {}

    static FakeModule &addTo(ModuleRegistry &modules, const QString &id)
    {
        auto module = std::make_unique<FakeModule>(id);
        auto &added = *module;
        modules.add(std::move(module));
        return added;
    }

    QString id() const override { return m_id; }
    QString title() const override { return m_id.toUpper(); }
    QString symbol() const override { return u"gearshape"_qs; }
    void activate() override
    {
        ++activations;
        if (!failure.isEmpty())
            throw LocalizedError(failure);
    }
    std::optional<double> contentWidth(const AppServices &) const override { return width; }
    View makeView(const ModuleContext &context) override
    {
        panel = &context.panel;
        return {page, std::make_unique<QObject>()};
    }

    std::optional<double> width;
    QString failure; ///< what `activate` throws, nothing if empty
    int activations = 0;
    QUrl page;
    NotchViewModel *panel = nullptr; ///< that a view was made for last

private:
    QString m_id;
};

} // namespace velmo
