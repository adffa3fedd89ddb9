#pragma once

#include "../hostglobal.h"
#include "../utils/pinfigure.h"

#include <QBrush>
#include <QFont>
#include <QList>
#include <QPen>
#include <QString>
#include <QVector>
#include <QWidget>

namespace IPSERDESIP {

// Draws a core's port symbol: a body with the module name on top, the
// input ports as wires on the left, the output ports on the right, bus
// ports as thick wires crossed by a slash. The widget asks for the size
// the whole symbol needs, so that a scroll area around it can scroll a
// long port list.
class IPHOST_EXPORT PinFigureView : public QWidget
{
    Q_OBJECT
public:
    explicit PinFigureView(QWidget *parent = nullptr);
    ~PinFigureView() override;

    // Replaces the drawn ports and resizes the widget to fit them.
    void setPins(const QList<Utils::PinFigure> &pins);
    QList<Utils::PinFigure> pins() const;

    // The name written on the body; an empty name shows the default title.
    void setTitle(const QString &title);
    QString title() const;
    static QString defaultTitle();

    int inputCount() const;
    int outputCount() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void relayout();
    void updateFonts();
    int rowCount() const;
    int rowsTop() const;
    int rowCentre(int row) const;
    QRect bodyRect() const;
    void drawBody(QPainter &painter) const;
    void drawSide(QPainter &painter, const QVector<int> &side, bool left,
                  int firstRow, int lastRow) const;
    void drawPin(QPainter &painter, const Utils::PinFigure &pin, bool left, int edge,
                 int y) const;

    QList<Utils::PinFigure> m_pins;
    QVector<int> m_inputs;   // indices into m_pins, in list order
    QVector<int> m_outputs;
    QString m_title;

    // Geometry, recomputed whenever the pins, the title or the font change.
    int m_rowHeight = 0;
    int m_titleHeight = 0;
    int m_leftTextWidth = 0;
    int m_rightTextWidth = 0;
    int m_titleWidth = 0;

    // Painting resources, made once so that painting allocates nothing.
    QFont m_titleFont;
    QPen m_bodyPen;
    QPen m_wirePen;
    QPen m_busPen;
    QPen m_slashPen;
    QPen m_textPen;
    QBrush m_bodyBrush;
};

} // namespace IPSERDESIP
