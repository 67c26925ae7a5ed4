// A window that the reef fills.
#pragma once

#include <QPointF>
#include <QQuickView>
#include <QTimer>
#include <optional>

class QAction;
class QMenu;
class Reef;

/// What a reef's window is for.
enum class PURPOSE {
    LOOKING,      ///< a window among others
    UNTIL_INPUT,  ///< an idle picture, gone at the first input
    BACKGROUND,   ///< behind everything, deaf to input
};

/// Shows the reef with the person's settings and, below it, why it stands still. Keys, menu, hidden
/// pointer and remembered size belong to the window for looking.
class ReefWindow : public QQuickView {
    Q_OBJECT

public:
    explicit ReefWindow(PURPOSE purpose);
    ~ReefWindow() override;

    Reef& reef() { return *the_reef; }
    /// Shows the window with the size that it had last time.
    void showRemembered();
    /// Ends the program; it will have its size next time, too.
    void end();

signals:
    /// The reef cannot be drawn at all; one line.
    void failed(const QString& reason);

protected:
    bool event(QEvent* event) override;

private:
    void handleKey(int key);
    void toggleFullScreen();
    void showMenu(const QPoint& place);
    void buildMenu();
    void editSettings();

    const PURPOSE purpose;
    Reef* the_reef;
    std::unique_ptr<QMenu> menu;         ///< made when it is wanted for the first time
    QTimer idle;                         ///< until the pointer hides
    std::optional<QPointF> first_place;  ///< of the pointer, on the screen
    QSize normal_size;                   ///< while the window was neither maximised nor filling
};
