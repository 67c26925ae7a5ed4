// Whether other windows cover one.
#pragma once

#include <QObject>
#include <cstdint>

class QSocketNotifier;
struct xcb_connection_t;

/// Of a window on an X server. Hears of what happens after it was made, on a connection of its own,
/// because the toolkit does not ask for this news. While a compositor draws the screen no window
/// counts as covered.
class WindowCover : public QObject {
    Q_OBJECT

public:
    explicit WindowCover(std::uint32_t window);
    ~WindowCover() override;

    std::uint32_t window() const { return watched; }
    /// Nothing of it is on the screen.
    bool covered() const { return is_covered; }

signals:
    void coveredChanged();

private:
    void listen();

    const std::uint32_t watched;
    xcb_connection_t* const server;
    QSocketNotifier* news = nullptr;  ///< null without an X server
    bool is_covered = false;
};
