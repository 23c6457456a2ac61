#include "SheetView.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextOption>

#include <climits>

namespace {

constexpr int kMargin = 12; // device-independent pixels around the paper, its shadow included
constexpr int kShadow = 4;
constexpr int kWheelStep = 120; // QWheelEvent's unit for one notch

/// To screen readers a sheet is a picture, whatever it is drawn on.
QAccessibleInterface *describe(const QString & /*className*/, QObject *object)
{
    auto *view = qobject_cast<SheetView *>(object);
    return view == nullptr ? nullptr : new QAccessibleWidget(view, QAccessible::Graphic);
}

} // namespace

SheetView::SheetView(QWidget *parent) : QWidget(parent)
{
    [[maybe_unused]] static const bool isDescribed = (QAccessible::installFactory(describe), true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void SheetView::showSide(const QImage &picture, QSizeF paperSize, const QString &description)
{
    _picture = picture;
    _paperSize = paperSize;
    _words.clear();
    setAccessibleName(description);
    update();
}

void SheetView::showWords(const QString &words)
{
    _picture = QImage();
    _paperSize = QSizeF();
    _words = words;
    setAccessibleName(words);
    update();
}

void SheetView::setTurnable(bool turnable)
{
    _turnable = turnable;
    setCursor(turnable ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

QSize SheetView::place() const
{
    return margined().size().toSize().expandedTo({1, 1});
}

QRectF SheetView::margined() const
{
    return QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
}

QSize SheetView::sizeHint() const
{
    return {28 * fontMetrics().averageCharWidth() * 2, 28 * fontMetrics().height()};
}

QSize SheetView::minimumSizeHint() const
{
    return sizeHint() / 3;
}

QRectF SheetView::paper(QSizeF paperSize) const
{
    const QRectF place = margined();
    QRectF result(QPointF(), paperSize.scaled(place.size(), Qt::KeepAspectRatio));
    result.moveCenter(place.center());
    return result;
}

void SheetView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (_paperSize.isEmpty())
        paintWords(painter);
    else
        paintPaper(painter);
}

/// Paper is white, whatever the theme.
void SheetView::paintPaper(QPainter &painter) const
{
    const QRectF sheet = paper(_paperSize);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(sheet.translated(kShadow, kShadow), palette().color(QPalette::Shadow));
    painter.fillRect(sheet, Qt::white);
    if (!_picture.isNull())
        painter.drawImage(sheet, _picture);
    painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid),
                        hasFocus() ? 3 : 1));
    painter.drawRect(sheet);
}

void SheetView::paintWords(QPainter &painter) const
{
    QTextOption layout(Qt::AlignCenter);
    layout.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(margined(), _words, layout);
}

void SheetView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    emit resized();
}

void SheetView::mouseReleaseEvent(QMouseEvent *event)
{
    if (_turnable && event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit turned();
}

void SheetView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (_turnable)
            emit turned();
        break;
    case Qt::Key_PageDown:
        emit moved(1);
        break;
    case Qt::Key_PageUp:
        emit moved(-1);
        break;
    case Qt::Key_End:
        emit moved(INT_MAX);
        break;
    case Qt::Key_Home:
        emit moved(-INT_MAX);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void SheetView::wheelEvent(QWheelEvent *event)
{
    _wheel += event->angleDelta().y();
    const int sheets = _wheel / kWheelStep;
    _wheel -= sheets * kWheelStep;
    if (sheets != 0)
        emit moved(-sheets);
}

void SheetView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    update();
}

void SheetView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
}
