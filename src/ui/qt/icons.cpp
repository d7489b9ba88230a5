#include "ui/qt/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

namespace skv::ui::qt {

namespace {

class DrawnIcon : public QIconEngine {
 public:
  DrawnIcon(QString name, QPalette::ColorRole part) : name_(std::move(name)), part_(part) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal ratio) override {
    QColor colour;
    if (part_ != QPalette::NoRole) colour = QGuiApplication::palette().color(part_);
    if (mode == QIcon::Disabled && colour.isValid()) colour.setAlphaF(0.35F);
    return drawing(name_, size / ratio, ratio, colour);
  }
  QIconEngine* clone() const override { return new DrawnIcon(name_, part_); }

 private:
  QString name_;
  QPalette::ColorRole part_;
};

}  // namespace

QPixmap drawing(const QString& name, QSize size, qreal ratio, const QColor& colour) {
  QPixmap pixmap(size * ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(name)).render(&painter, pixmap.rect());
  if (colour.isValid()) {
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), colour);
  }
  painter.end();
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

QIcon drawnIcon(const QString& name, QPalette::ColorRole part) {
  return QIcon(new DrawnIcon(name, part));
}

}  // namespace skv::ui::qt
