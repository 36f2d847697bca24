#pragma once

#include "VelmoCore/Activity/ActivityEvent.h"
#include "VelmoCore/Shelf/DroppedItem.h"

#include <memory>
#include <vector>

namespace velmo {

/// What a quick action came to.
struct ActionOutcome {
    QString message;
    QString symbol;
    FeedbackStyle style = FeedbackStyle::success;
    bool dismissesPanel = false;

    bool operator==(const ActionOutcome &) const = default;
};

/// Something that can be done with dropped items in a moment. Main thread only.
class NotchAction {
public:
    virtual ~NotchAction() = default;

    virtual QString id() const = 0;
    virtual QString title() const = 0;
    virtual QString symbol() const = 0;
    virtual bool isAvailable(const std::vector<DroppedItem> &items) const = 0;
    /// Throws `LocalizedError`.
    virtual ActionOutcome perform(const std::vector<DroppedItem> &items) = 0;
};

/// The actions that Orvane knows.
class ActionCatalog {
public:
    /// Two actions with one id are a fault in the program, which ends here.
    void add(std::unique_ptr<NotchAction> action);
    NotchAction *find(const QString &id) const;
    /// Those available for the items, in the order of registration; none without items.
    std::vector<NotchAction *> actions(const std::vector<DroppedItem> &items) const;

private:
    std::vector<std::unique_ptr<NotchAction>> m_actions;
};

} // namespace velmo
