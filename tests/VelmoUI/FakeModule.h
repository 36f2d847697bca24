#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo {

class FakeModule : public NotchModule {
public:
    struct Page : ModulePage {
        explicit Page(std::vector<Route> &asked) : routes(asked) {}
        void go(const Route &route) override { routes.push_back(route); }
        std::vector<Route> &routes;
    };

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
    std::optional<double> contentWidth() const override { return width; }
    View makeView(PanelPort &port) override
    {
        panel = &port;
        return {page, std::make_unique<Page>(routes)};
    }

    std::optional<double> width;
    QString failure; ///< what `activate` throws, nothing if empty
    int activations = 0;
    QUrl page;
    PanelPort *panel = nullptr; ///< that a view was made for last
    std::vector<Route> routes;  ///< that its pages were asked for

private:
    QString m_id;
};

} // namespace velmo
