// Where the program's windows open: over the main window, on its screen, and wholly in view where they fit.
#pragma once

#include <QList>
#include <QMargins>
#include <QRect>
#include <optional>

class QWidget;

// In pixels of the desktop, whose screens may lie anywhere, also left of and above its origin. `areas` are the parts of
// the screens that are free for windows.

// The frame in the middle of `over`, and then as KeepWithin has it.
QRect CenterOver(QSize frame, const QRect& over, const QList<QRect>& areas);

// The frame moved as little as it takes to be wholly in the area that it, or else its middle, is nearest to; where that
// is too small its upper left corner is in view. With no area it stays where it is.
QRect KeepWithin(QRect frame, const QList<QRect>& areas);

// The free areas of all screens.
QList<QRect> FreeAreas();

// From now on the window comes to stand over the middle of `main` when it is shown for the first time, and later where
// the user left it, unless its screen has gone meanwhile. `main` must outlive the window, or be gone for good when the
// window is shown no more.
void OpenOver(QWidget& window, const QWidget& main);

// The edges that the desktop draws round a window. Nothing while they aren't known: of a hidden window and of one that
// the desktop hasn't framed yet. They are the system's own word; what a widget says of its frame may be of before.
std::optional<QMargins> EdgesOf(const QWidget& window);

// The window with its edges, as far as they are known.
QRect WithEdges(const QWidget& window);

// Moves the window so that the upper left corner of its edges stands there, also where they aren't known yet.
void MoveWithEdges(QWidget& window, QPoint corner, const std::optional<QMargins>& edges);

// From now on the window is in front of `main` whenever it is on show, as a dialog of it, and goes with it to the task
// bar. It isn't deleted with it. To be called before the window is shown for the first time.
void KeepInFrontOf(QWidget& window, QWidget& main);
