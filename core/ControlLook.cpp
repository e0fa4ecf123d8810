#include "ControlLook.h"

#include <QEvent>
#include <QFrame>

namespace {

constexpr char kProperty[] = "controlLook";
constexpr char kEdgeName[] = "controlLookEdge";

constexpr int kDoubleEdge = 1;
constexpr int kSunken = 512;

int BitsOf(const QString& look) {
  if (look == QStringLiteral("raised")) return 256;
  if (look == QStringLiteral("sunken")) return kSunken;
  if (look == QStringLiteral("framed")) return 257;
  return 769;
}

// A frame over a widget that has none of its own; it follows the widget's size and lets the mouse through.
class Edge : public QFrame {
 public:
  explicit Edge(QWidget* window) : QFrame(window) {
    setObjectName(kEdgeName);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(window->rect());
    window->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
    return QFrame::eventFilter(watched, event);
  }
};

QFrame* FrameOf(QWidget* window) {
  if (auto* frame = qobject_cast<QFrame*>(window)) return frame;
  auto* edge = window->findChild<QFrame*>(QLatin1String(kEdgeName), Qt::FindDirectChildrenOnly);
  if (!edge) {
    edge = new Edge(window);
    edge->raise();
    edge->show();
  }
  return edge;
}

}  // namespace

// Bits are only ever added, and a name that isn't known adds them all: both are meant.
void SetControlLook(QWidget* Window, const QString& Look) {
  if (!Window) return;
  const int bits = ControlLookBits(Window) | BitsOf(Look);
  Window->setProperty(kProperty, bits);
  QFrame* frame = FrameOf(Window);
  frame->setFrameShadow(bits & kSunken ? QFrame::Sunken : QFrame::Raised);
  frame->setFrameShape(bits & kDoubleEdge ? QFrame::Box : QFrame::Panel);
  frame->setLineWidth(1);
  frame->setMidLineWidth(0);
}

int ControlLookBits(const QWidget* Window) {
  return Window ? Window->property(kProperty).toInt() : 0;
}
