#pragma once

#include "../hostglobal.h"
#include "../utils/pinfigure.h"

#include <QFont>
#include <QHash>
#include <QList>
#include <QStaticText>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

namespace IPSERDESIP {

// Draws a core's port symbol: a body with the module name on top, the
// input ports as wires on the left, the output ports on the right, bus
// ports crossed by a slash. The widget asks for the size the whole symbol
// needs, so that a scroll area around it can scroll a long port list.
// Each port name is measured and laid out once per font, for all figures
// of the process.
class IPHOST_EXPORT PinFigureView : public QWidget
{
    Q_OBJECT
public:
    explicit PinFigureView(QWidget *parent = nullptr);
    ~PinFigureView() override;

    // Replaces the drawn ports; the same list again changes nothing.
    void setPins(const QList<Utils::PinFigure> &pins);
    QList<Utils::PinFigure> pins() const;

    // The name written on the body; an empty name shows the default title.
    void setTitle(const QString &title);
    QString title() const;
    static QString defaultTitle();

    // The port names of each side, top to bottom.
    QStringList inputNames() const;
    QStringList outputNames() const;
    int inputCount() const;
    int outputCount() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    // One port as drawn: which entry of the list, and its name's width.
    struct Row
    {
        int pin;
        int textWidth;
    };
    // A port name measured and laid out in one font.
    struct Name
    {
        int width = 0;
        QStaticText text;
    };
    using NameCache = QHash<QString, Name>;
    static NameCache &nameCache(const QFont &font);

    void relayout();
    void measureFont();
    void measureTitle();
    void fitSize(const QSize &before);
    int textWidth(const QString &name);
    QStringList names(const QVector<Row> &side) const;
    int rowCount() const;
    int rowsTop() const;
    QRect bodyRect() const;
    void drawBody(QPainter &painter) const;
    void drawSide(QPainter &painter, const QVector<Row> &side, bool left, int firstRow,
                  int lastRow) const;

    QList<Utils::PinFigure> m_pins;
    QVector<Row> m_inputs;
    QVector<Row> m_outputs;
    QString m_title;
    NameCache *m_names = nullptr; // of the current font

    // Geometry, from the font and the style.
    QFont m_titleFont;
    int m_rowHeight = 0;
    int m_titleHeight = 0;
    int m_spacing = 0;
    int m_wireLength = 0;
    int m_ascent = 0;
    int m_titleWidth = 0;
    int m_leftTextWidth = 0;
    int m_rightTextWidth = 0;
};

} // namespace IPSERDESIP
