#pragma once

#include <QMdiSubWindow>

/// An MDI sub-window that the user can minimize and maximize but not close: neither by a button
/// nor by the close shortcuts, which every MDI sub-window answers.
class FixedSubWindow : public QMdiSubWindow
{
    Q_OBJECT

public:
    /// Takes over the view.
    explicit FixedSubWindow(QWidget* view);

    /// Shows the window, which has to be in its MDI area, maximized.
    void showFixed();

signals:
    /// The Tab key, or Shift+Tab, is to lead on from the part that has the focus.
    void tabbed(bool next);

protected:
    bool focusNextPrevChild(bool next) override;
    void closeEvent(QCloseEvent* event) override;
};
