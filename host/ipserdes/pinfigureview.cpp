#include "pinfigureview.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace IPSERDESIP {

namespace {

constexpr int kMargin = 10;         // around the whole symbol
constexpr int kPinLength = 24;      // length of a port wire outside the body
constexpr int kTextGap = 6;         // between the body's edge and a port name
constexpr int kMiddleGap = 20;      // between the left and the right names
constexpr int kTitlePadding = 16;   // left and right of the title
constexpr int kMinBodyWidth = 120;
constexpr int kMinBodyRows = 2;     // an empty symbol still shows a body
constexpr int kBottomPadding = 8;
constexpr int kRowPadding = 6;
constexpr int kTitleRowPadding = 12;
constexpr int kSlashHalf = 4;       // half size of the bus slash

int widestName(const QFontMetrics &metrics, const QList<Utils::PinFigure> &pins,
               const QVector<int> &indices)
{
    int widest = 0;
    for (int index : indices)
        widest = std::max(widest, metrics.horizontalAdvance(pins.at(index).name));
    return widest;
}

} // namespace

PinFigureView::PinFigureView(QWidget *parent)
    : QWidget(parent)
    , m_bodyPen(QColor(50, 50, 50), 2)
    , m_wirePen(QColor(30, 30, 30), 1)
    , m_busPen(QColor(20, 60, 160), 3)
    , m_slashPen(QColor(20, 60, 160), 1)
    , m_textPen(QColor(20, 20, 20))
    , m_bodyBrush(QColor(238, 244, 252))
{
    setObjectName(QStringLiteral("pinFigureView"));
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, Qt::white);
    setPalette(pal);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    updateFonts();
    relayout();
}

PinFigureView::~PinFigureView() = default;

void PinFigureView::setPins(const QList<Utils::PinFigure> &pins)
{
    m_pins = pins;
    relayout();
}

QList<Utils::PinFigure> PinFigureView::pins() const
{
    return m_pins;
}

void PinFigureView::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    relayout();
}

QString PinFigureView::title() const
{
    return m_title.isEmpty() ? defaultTitle() : m_title;
}

QString PinFigureView::defaultTitle()
{
    return QStringLiteral("cpri");
}

int PinFigureView::inputCount() const
{
    return m_inputs.size();
}

int PinFigureView::outputCount() const
{
    return m_outputs.size();
}

QSize PinFigureView::sizeHint() const
{
    const QRect body = bodyRect();
    return QSize(body.width() + 2 * (kMargin + kPinLength), body.height() + 2 * kMargin);
}

QSize PinFigureView::minimumSizeHint() const
{
    return sizeHint();
}

void PinFigureView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateFonts();
        relayout();
    }
}

void PinFigureView::updateFonts()
{
    m_titleFont = font();
    m_titleFont.setBold(true);
    if (m_titleFont.pointSizeF() > 0)
        m_titleFont.setPointSizeF(m_titleFont.pointSizeF() + 1);
}

// Sorts the ports to their sides and measures everything painting needs.
void PinFigureView::relayout()
{
    m_inputs.clear();
    m_outputs.clear();
    for (int i = 0; i < m_pins.size(); ++i)
        (m_pins.at(i).direction == 0 ? m_inputs : m_outputs).append(i);

    const QFontMetrics metrics(font());
    m_rowHeight = metrics.height() + kRowPadding;
    m_leftTextWidth = widestName(metrics, m_pins, m_inputs);
    m_rightTextWidth = widestName(metrics, m_pins, m_outputs);

    const QFontMetrics titleMetrics(m_titleFont);
    m_titleHeight = titleMetrics.height() + kTitleRowPadding;
    m_titleWidth = titleMetrics.horizontalAdvance(title());

    updateGeometry();
    resize(sizeHint());
    update();
}

int PinFigureView::rowCount() const
{
    return std::max(m_inputs.size(), m_outputs.size());
}

int PinFigureView::rowsTop() const
{
    return kMargin + m_titleHeight;
}

int PinFigureView::rowCentre(int row) const
{
    return rowsTop() + row * m_rowHeight + m_rowHeight / 2;
}

QRect PinFigureView::bodyRect() const
{
    const int namesWidth = 2 * kTextGap + m_leftTextWidth + kMiddleGap + m_rightTextWidth;
    const int width = std::max({kMinBodyWidth, m_titleWidth + 2 * kTitlePadding, namesWidth});
    const int rows = std::max(rowCount(), kMinBodyRows);
    const int height = m_titleHeight + rows * m_rowHeight + kBottomPadding;
    return QRect(kMargin + kPinLength, kMargin, width, height);
}

void PinFigureView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    drawBody(painter);

    // Only the rows that intersect the exposed area are drawn.
    const QRect exposed = event->rect();
    const int firstRow = std::max(0, (exposed.top() - rowsTop()) / m_rowHeight - 1);
    const int lastRow = (exposed.bottom() - rowsTop()) / m_rowHeight + 1;
    if (lastRow < 0)
        return;
    painter.setFont(font());
    drawSide(painter, m_inputs, true, firstRow, lastRow);
    drawSide(painter, m_outputs, false, firstRow, lastRow);
}

void PinFigureView::drawBody(QPainter &painter) const
{
    const QRect body = bodyRect();
    painter.setPen(m_bodyPen);
    painter.setBrush(m_bodyBrush);
    painter.drawRect(body);

    const QRect titleRect(body.x(), body.y(), body.width(), m_titleHeight);
    painter.drawLine(titleRect.x(), titleRect.y() + titleRect.height(),
                     titleRect.x() + titleRect.width(), titleRect.y() + titleRect.height());
    painter.setPen(m_textPen);
    painter.setFont(m_titleFont);
    painter.drawText(titleRect, Qt::AlignCenter, title());
}

void PinFigureView::drawSide(QPainter &painter, const QVector<int> &side, bool left,
                             int firstRow, int lastRow) const
{
    const QRect body = bodyRect();
    const int edge = left ? body.x() : body.x() + body.width();
    const int last = std::min(lastRow, side.size() - 1);
    for (int row = firstRow; row <= last; ++row)
        drawPin(painter, m_pins.at(side.at(row)), left, edge, rowCentre(row));
}

// edge is the x of the body's side the wire ends at; y the wire's row centre.
void PinFigureView::drawPin(QPainter &painter, const Utils::PinFigure &pin, bool left,
                            int edge, int y) const
{
    const int outer = left ? edge - kPinLength : edge + kPinLength;

    painter.setPen(pin.isBus ? m_busPen : m_wirePen);
    painter.drawLine(outer, y, edge, y);
    if (pin.isBus) {
        const int middle = (outer + edge) / 2;
        painter.setPen(m_slashPen);
        painter.drawLine(middle - kSlashHalf, y + kSlashHalf + 1,
                         middle + kSlashHalf, y - kSlashHalf - 1);
    }

    const int textWidth = left ? m_leftTextWidth : m_rightTextWidth;
    const int textX = left ? edge + kTextGap : edge - kTextGap - textWidth;
    const QRect textRect(textX, y - m_rowHeight / 2, textWidth, m_rowHeight);
    painter.setPen(m_textPen);
    painter.drawText(textRect, (left ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter,
                     pin.name);
}

} // namespace IPSERDESIP
