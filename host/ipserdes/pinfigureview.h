#pragma once

#include "../hostglobal.h"
#include "../utils/pinfigure.h"

#include <QHash>
#include <QList>
#include <QPalette>
#include <QStaticText>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

namespace IPSERDESIP {

// Draws a core's port symbol: an outlined body with the module name on top, the
// input ports as wires on the left, the output ports on the right, bus
// ports highlighted and crossed by a tick. The widget asks for the size the
// whole symbol needs, so that a scroll area around it can scroll a long
// port list. Each name is measured and laid out once per font, for all
// figures of the process.
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
    // A name measured and laid out in one font.
    struct Name
    {
        int width = 0;
        QStaticText text;
    };
    // One port as drawn: which entry of the list, which name of the cache.
    struct Row
    {
        int pin;
        int name;
    };
    // The ports of one side, and the width of its widest name.
    struct Side
    {
        bool left;
        QVector<Row> rows;
        int textWidth = 0;
    };
    // The names of one font; a name keeps its place once it has one.
    struct NameCache
    {
        QHash<QString, int> places;
        QVector<Name> names;
    };
    static NameCache &nameCache(const QFont &font);
    // What painting draws, laid out whenever the ports, title or font change.
    struct Picture
    {
        QVector<QPair<QRect, QPalette::ColorRole>> fills; // the body's lines, the wires
        QVector<QPair<QPoint, int>> texts;                // names at their top left
    };

    void relayout();
    void measureFont();
    void measureTitle();
    void layoutPicture();
    int measure(const QString &name);
    const Name &name(int place) const;
    QStringList names(const Side &side) const;
    int rowCount() const;
    int rowsTop() const;
    QRect bodyRect() const;
    void layoutSide(const Side &side);

    QList<Utils::PinFigure> m_pins;
    Side m_inputs{true, {}};
    Side m_outputs{false, {}};
    QString m_title;
    NameCache *m_names = nullptr; // of the current font
    Picture m_picture;

    // Geometry, from the font.
    int m_textHeight = 0;
    int m_rowHeight = 0;
    int m_titleHeight = 0;
    int m_spacing = 0;
    int m_wireLength = 0;
    int m_ascent = 0;
    int m_strikeOut = 0;
    int m_titleWidth = 0;
};

} // namespace IPSERDESIP
