#pragma once

class QWidget;

// Keeps a window above all others, or lets it go back among them, while it stays on show. A desktop without stacking
// takes it as a wish. Null is passed over.
void SetTopmost(QWidget* Window);
void SetNotTopmost(QWidget* Window);

// Brings a window into view with the keys, whether it was hidden, behind others or minimised.
void ShowInFront(QWidget& Window);
