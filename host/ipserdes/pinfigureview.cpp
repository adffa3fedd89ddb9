#include "pinfigureview.h"

#include <QEvent>
#include <QFontMetrics>
#include <QMap>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace IPSERDESIP {

// All distances of the symbol come from its font: the average character
// width spaces the parts, a port wire is as long as a row is high, and a
// wire meets its name at the height of the font's strike-out line.

// Port names repeat in every figure of every dialog: the caches of all
// fonts used so far live as long as the process.
PinFigureView::NameCache &PinFigureView::nameCache(const QFont &font)
{
    static QMap<QString, NameCache> fonts;
    return fonts[font.key()];
}

PinFigureView::PinFigureView(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("pinFigureView"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    measureFont();
    relayout();
}

PinFigureView::~PinFigureView() = default;

void PinFigureView::setPins(const QList<Utils::PinFigure> &pins)
{
    if (pins == m_pins)
        return;
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
    measureTitle();
}

QString PinFigureView::title() const
{
    return m_title.isEmpty() ? defaultTitle() : m_title;
}

QString PinFigureView::defaultTitle()
{
    return QStringLiteral("cpri");
}

QStringList PinFigureView::inputNames() const
{
    return names(m_inputs);
}

QStringList PinFigureView::outputNames() const
{
    return names(m_outputs);
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
    return QSize(body.right() + m_wireLength + m_spacing, body.bottom() + m_spacing);
}

QSize PinFigureView::minimumSizeHint() const
{
    return sizeHint();
}

void PinFigureView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        measureFont();
        relayout();
    }
}

// The title changes the body's width only; it is measured on its own.
void PinFigureView::measureTitle()
{
    const QSize before = sizeHint();
    m_titleWidth = QFontMetrics(m_titleFont).horizontalAdvance(title());
    fitSize(before);
}

void PinFigureView::fitSize(const QSize &before)
{
    if (sizeHint() != before) {
        updateGeometry();
        resize(sizeHint());
    }
    update();
}

void PinFigureView::measureFont()
{
    m_names = &nameCache(font());
    m_titleFont = font();
    m_titleFont.setBold(true);
    const QFontMetrics metrics(font());
    m_spacing = metrics.averageCharWidth();
    m_rowHeight = metrics.height() + m_spacing;
    m_wireLength = m_rowHeight;
    m_ascent = metrics.ascent();
    m_titleHeight = QFontMetrics(m_titleFont).height() + m_spacing + m_spacing;
    m_titleWidth = QFontMetrics(m_titleFont).horizontalAdvance(title());
}

int PinFigureView::textWidth(const QString &name)
{
    const auto known = m_names->constFind(name);
    if (known != m_names->cend())
        return known->width;
    Name measured;
    measured.width = fontMetrics().horizontalAdvance(name);
    measured.text.setText(name);
    measured.text.setTextFormat(Qt::PlainText);
    m_names->insert(name, measured);
    return measured.width;
}

// Sorts the ports to their sides and takes the widths painting needs; the
// widget is resized only when the symbol's size changes.
void PinFigureView::relayout()
{
    const QSize before = sizeHint();
    m_inputs.clear();
    m_outputs.clear();
    m_leftTextWidth = 0;
    m_rightTextWidth = 0;
    for (int i = 0; i < m_pins.size(); ++i) {
        const Row row{i, textWidth(m_pins.at(i).name)};
        const bool input = m_pins.at(i).direction == 0;
        (input ? m_inputs : m_outputs).append(row);
        int &widest = input ? m_leftTextWidth : m_rightTextWidth;
        widest = std::max(widest, row.textWidth);
    }
    fitSize(before);
}

QStringList PinFigureView::names(const QVector<Row> &side) const
{
    QStringList list;
    for (const Row &row : side)
        list << m_pins.at(row.pin).name;
    return list;
}

int PinFigureView::rowCount() const
{
    return std::max(m_inputs.size(), m_outputs.size());
}

int PinFigureView::rowsTop() const
{
    return m_spacing + m_titleHeight;
}

// The body holds the title row above the rows of port names, each side's
// names a spacing away from its edge and the two sides a wire length apart.
QRect PinFigureView::bodyRect() const
{
    const int names = m_spacing + m_leftTextWidth + m_wireLength + m_rightTextWidth + m_spacing;
    const int width = std::max(names, m_spacing + m_titleWidth + m_spacing);
    const int height = m_titleHeight + rowCount() * m_rowHeight + m_spacing;
    return QRect(m_spacing + m_wireLength, m_spacing, width, height);
}

void PinFigureView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    drawBody(painter);

    // Only the rows that meet the exposed area are drawn.
    const QRect exposed = event->rect();
    const int firstRow = std::max(0, (exposed.top() - rowsTop()) / m_rowHeight);
    const int lastRow = (exposed.bottom() - rowsTop()) / m_rowHeight;
    painter.setFont(font());
    drawSide(painter, m_inputs, true, firstRow, lastRow);
    drawSide(painter, m_outputs, false, firstRow, lastRow);
}

// Straight lines are filled as one pixel wide rectangles, which the
// raster engine fills a span at a time.
void PinFigureView::drawBody(QPainter &painter) const
{
    const QRect body = bodyRect();
    const QColor line = palette().color(QPalette::WindowText);
    painter.fillRect(body, palette().brush(QPalette::AlternateBase));
    painter.fillRect(QRect(body.topLeft(), body.bottomLeft()), line);
    painter.fillRect(QRect(body.topRight(), body.bottomRight()), line);
    painter.fillRect(QRect(body.topLeft(), body.topRight()), line);
    painter.fillRect(QRect(body.bottomLeft(), body.bottomRight()), line);
    painter.fillRect(QRect(QPoint(body.left(), rowsTop()), QPoint(body.right(), rowsTop())), line);
    painter.setPen(line);
    painter.setFont(m_titleFont);
    painter.drawText(QRect(body.left(), body.top(), body.width(), m_titleHeight),
                     Qt::AlignCenter, title());
}

// A side's wires end at the body's edge, its names start a spacing inside
// it. A bus is drawn in the highlight colour and crossed by a slash a
// spacing in from the wire's outer end.
void PinFigureView::drawSide(QPainter &painter, const QVector<Row> &side, bool left,
                             int firstRow, int lastRow) const
{
    const QRect body = bodyRect();
    const int edge = left ? body.left() : body.right();
    const int outer = left ? edge - m_wireLength : edge + m_wireLength;
    const int slashX = left ? outer + m_spacing : outer - m_spacing;
    const int strikeOut = painter.fontMetrics().strikeOutPos();
    const QColor text = palette().color(QPalette::WindowText);
    const QColor bus = palette().color(QPalette::Highlight);
    const int last = std::min(lastRow, side.size() - 1);
    QVector<QLine> slashes;
    painter.setPen(bus);
    for (int row = firstRow; row <= last; ++row) {
        const Utils::PinFigure &pin = m_pins.at(side.at(row).pin);
        const int y = rowsTop() + row * m_rowHeight + m_spacing + m_ascent - strikeOut;
        painter.fillRect(QRect(QPoint(outer, y), QPoint(edge, y)), pin.isBus ? bus : text);
        if (pin.isBus)
            slashes << QLine(slashX - m_spacing, y + m_spacing, slashX + m_spacing, y - m_spacing);
    }
    painter.drawLines(slashes);
    painter.setPen(text);
    for (int row = firstRow; row <= last; ++row) {
        const Row &entry = side.at(row);
        const int top = rowsTop() + row * m_rowHeight + m_spacing;
        const int x = left ? edge + m_spacing : edge - m_spacing - entry.textWidth;
        painter.drawStaticText(QPoint(x, top), m_names->value(m_pins.at(entry.pin).name).text);
    }
}

} // namespace IPSERDESIP
