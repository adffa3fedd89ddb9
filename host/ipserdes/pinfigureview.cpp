#include "pinfigureview.h"

#include <QEvent>
#include <QFontMetrics>
#include <QMap>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace IPSERDESIP {

// All distances of the symbol come from its font: the average character
// width spaces the parts, a port wire is as long as a row is high, and a
// wire meets its name at the height of the font's strike-out line.

// Names repeat in every figure of every dialog: the caches of all fonts
// used so far live as long as the process.
PinFigureView::NameCache &PinFigureView::nameCache(const QFont &font)
{
    static QMap<QString, NameCache> fonts;
    return fonts[font.key()];
}

PinFigureView::PinFigureView(QWidget *parent) : QWidget(parent)
{
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
    return QStringLiteral("module");
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
    return m_inputs.rows.size();
}

int PinFigureView::outputCount() const
{
    return m_outputs.rows.size();
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

void PinFigureView::measureFont()
{
    m_names = &nameCache(font());
    const QFontMetrics metrics(font());
    m_spacing = metrics.averageCharWidth();
    m_textHeight = metrics.height();
    m_rowHeight = m_textHeight + m_spacing;
    m_wireLength = m_rowHeight;
    m_ascent = metrics.ascent();
    m_strikeOut = metrics.strikeOutPos();
    m_titleHeight = m_textHeight + m_spacing + m_spacing;
    m_titleWidth = name(measure(title())).width;
}

// The title changes the body's width only; it is measured on its own.
void PinFigureView::measureTitle()
{
    m_titleWidth = name(measure(title())).width;
    layoutPicture();
}

// The name's place in the cache of the current font, where it is measured
// and laid out the first time it is asked for.
int PinFigureView::measure(const QString &name)
{
    auto known = m_names->places.find(name);
    if (known == m_names->places.end()) {
        known = m_names->places.insert(name, m_names->names.size());
        m_names->names.append({fontMetrics().horizontalAdvance(name), QStaticText(name)});
    }
    return known.value();
}

const PinFigureView::Name &PinFigureView::name(int place) const
{
    return m_names->names.at(place);
}

// Sorts the ports to their sides, with the widths painting needs.
void PinFigureView::relayout()
{
    // The vectors keep their capacity from one port list to the next.
    for (Side *side : {&m_inputs, &m_outputs}) {
        side->rows.clear();
        side->textWidth = {};
    }
    for (int i = 0; i < m_pins.size(); ++i) {
        const Row row{i, measure(m_pins.at(i).name)};
        Side &side = m_pins.at(i).direction == 0 ? m_inputs : m_outputs;
        side.rows.append(row);
        side.textWidth = std::max(side.textWidth, name(row.name).width);
    }
    layoutPicture();
}

// Lays the picture out and announces the size it needs; the layout or
// scroll area around the widget applies it. Straight lines are one pixel
// wide rectangles, which the raster engine fills a span at a time.
void PinFigureView::layoutPicture()
{
    const QRect body = bodyRect();
    const QPalette::ColorRole line = QPalette::WindowText;
    const QRect titleRow(body.left(), body.top(), body.width(), m_titleHeight);
    const QSize titleSize(m_titleWidth, m_textHeight);
    m_picture.fills = {
        {QRect(body.topLeft(), body.bottomLeft()), line},
        {QRect(body.topRight(), body.bottomRight()), line},
        {QRect(body.topLeft(), body.topRight()), line},
        {QRect(body.bottomLeft(), body.bottomRight()), line},
        {QRect(QPoint(body.left(), rowsTop()), QPoint(body.right(), rowsTop())), line}};
    m_picture.texts = {
        {QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, titleSize, titleRow).topLeft(),
         measure(title())}};
    for (const Side *side : {&m_inputs, &m_outputs})
        layoutSide(*side);
    updateGeometry();
    update();
}

// A side's wires end at the body's edge, its names start a spacing inside
// it; a wire meets its name at the strike-out line. A bus is highlighted and
// crossed by a tick a spacing in from the wire's outer end.
void PinFigureView::layoutSide(const Side &side)
{
    const bool left = side.left;
    const QRect body = bodyRect();
    const int edge = left ? body.left() : body.right();
    const int outer = left ? edge - m_wireLength : edge + m_wireLength;
    const int tick = left ? outer + m_spacing : outer - m_spacing;
    int top = rowsTop() + m_spacing;
    for (const Row &row : side.rows) {
        const Utils::PinFigure &pin = m_pins.at(row.pin);
        const int y = top + m_ascent - m_strikeOut;
        const QPalette::ColorRole colour = pin.isBus ? QPalette::Highlight : QPalette::WindowText;
        m_picture.fills << qMakePair(QRect(QPoint(outer, y), QPoint(edge, y)), colour);
        if (pin.isBus)
            m_picture.fills << qMakePair(
                QRect(QPoint(tick, y - m_spacing), QPoint(tick, y + m_spacing)), colour);
        const int x = left ? edge + m_spacing : edge - m_spacing - name(row.name).width;
        m_picture.texts << qMakePair(QPoint(x, top), row.name);
        top += m_rowHeight;
    }
}

QStringList PinFigureView::names(const Side &side) const
{
    QStringList list;
    for (const Row &row : side.rows)
        list << m_pins.at(row.pin).name;
    return list;
}

int PinFigureView::rowCount() const
{
    return std::max(m_inputs.rows.size(), m_outputs.rows.size());
}

int PinFigureView::rowsTop() const
{
    return m_spacing + m_titleHeight;
}

// The body holds the title row above the rows of port names, each side's
// names a spacing away from its edge and the two sides a wire length apart.
QRect PinFigureView::bodyRect() const
{
    const int names =
        m_spacing + m_inputs.textWidth + m_wireLength + m_outputs.textWidth + m_spacing;
    const int width = std::max(names, m_spacing + m_titleWidth + m_spacing);
    const int height = m_titleHeight + rowCount() * m_rowHeight + m_spacing;
    return QRect(m_spacing + m_wireLength, m_spacing, width, height);
}

// The painter's pen is the widget's text colour; it clips what is not exposed.
void PinFigureView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    for (const auto &fill : qAsConst(m_picture.fills))
        painter.fillRect(fill.first, palette().color(fill.second));
    for (const auto &text : qAsConst(m_picture.texts))
        painter.drawStaticText(text.first, name(text.second).text);
}

} // namespace IPSERDESIP
