#pragma once

#include "VelmoSystem/Linux/X11/X11SelectionRead.h"
#include "VelmoSystem/Linux/X11/X11SelectionSource.h"
#include "VelmoSystem/Ports/Pasteboard.h"

#include <span>

namespace velmo {

/// The selection CLIPBOARD, or PRIMARY. XFixes reports each new owner, so that nothing is polled; a
/// server without it shows no changes.
class X11Pasteboard : public Pasteboard {
    Q_OBJECT

public:
    /// PRIMARY's owners change with every word that is selected: nobody is to wake for them.
    enum class Owners { followed, ignored };

    X11Pasteboard(X11Connection &connection, Scheduler &scheduler,
                  const QByteArray &selection = "CLIPBOARD", Owners owners = Owners::followed);

    std::uint64_t changeCount() const override { return m_changeCount; }
    void readTypes(Answer<std::vector<QString>> answer) override;
    void read(const QString &type, qsizetype limit, Answer<Data> answer) override;
    void write(const Contents &contents) override;

    /// For a selection whose owners are ignored: what is read from now on was offered at `time`, in
    /// these types, whose names this gives.
    std::vector<QString> startOffer(xcb_timestamp_t time, std::span<const xcb_atom_t> types);

private:
    struct Reading {
        std::unique_ptr<X11SelectionRead> read;
        X11SelectionRead::Finished finished;
    };

    void followOwners();
    void ownerChanged(const xcb_generic_event_t &event);
    void start(xcb_atom_t target, qsizetype limit, X11SelectionRead::Finished finished);
    void end(std::uint64_t id, const std::optional<X11SelectionRead::Result> &result);
    void endAll();
    std::vector<QString> typeNames(std::span<const xcb_atom_t> atoms);
    xcb_atom_t target(const QString &type) const;
    QByteArray utf8(const X11SelectionRead::Result &result) const;

    X11Connection &m_connection;
    Scheduler &m_scheduler;
    const xcb_atom_t m_selection;
    X11SelectionSource m_source;
    std::uint64_t m_changeCount = 0;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME; ///< of the present content
    std::vector<QString> m_targets;            ///< of the present content, once they are read
    std::map<std::uint64_t, Reading> m_readings;
    std::uint64_t m_nextReading = 0;
    X11Connection::Subscription m_ownerChanges;
};

} // namespace velmo
