#include "ui/qt/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

namespace skv::ui::qt {

namespace {

class DrawnIcon : public QIconEngine {
 public:
  DrawnIcon(QString name, QPalette::ColorRole role) : name_(std::move(name)), role_(role) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal ratio) override {
    QColor colour;
    if (role_ != QPalette::NoRole) colour = QGuiApplication::palette().color(role_);
    if (mode == QIcon::Disabled && colour.isValid()) colour.setAlphaF(0.35F);
    return drawing(name_, size / ratio, ratio, colour);
  }
  QIconEngine* clone() const override { return new DrawnIcon(name_, role_); }

 private:
  QString name_;
  QPalette::ColorRole role_;
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

QIcon drawnIcon(const QString& name) { return drawnIcon(name, QPalette::NoRole); }

QIcon drawnIcon(const QString& name, QPalette::ColorRole role) {
  return QIcon(new DrawnIcon(name, role));
}

}  // namespace skv::ui::qt
