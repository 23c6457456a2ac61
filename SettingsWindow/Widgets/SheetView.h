#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

/// One side of a sheet of paper, as large as the place for it allows, in its own proportions.
///
/// A click, Space or Return turns the sheet over where it has a printed back; Page Up, Page Down,
/// Home and End ask for another sheet. Screen readers hear the description.
class SheetView : public QWidget {
    Q_OBJECT

public:
    explicit SheetView(QWidget *parent = nullptr);

    /// Shows a picture; a null one leaves the paper blank.
    /// @param paperSize  in points; decides the proportions
    /// @param description  what it is, in the reader's language: "Sheet 2, front"
    void showSide(const QImage &picture, QSizeF paperSize, const QString &description);

    /// Shows words in the place of a sheet: why there is none. Plain text.
    void showWords(const QString &words);

    /// Whether a click turns the sheet over.
    void setTurnable(bool turnable);

    /// The place that there is for the paper, in the window's pixels; not empty.
    QSize place() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void turned();
    /// @param by  how many sheets on, negative for back; INT_MAX and -INT_MAX for the last and the
    /// first
    void moved(int by);
    /// The place for the sheet has another size: pictures should be made anew.
    void resized();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    QRectF paper(QSizeF paperSize) const;
    QRectF margined() const;
    void paintPaper(QPainter &painter) const;
    void paintWords(QPainter &painter) const;

    QImage _picture;
    QSizeF _paperSize; ///< empty where there are words only
    QString _words;
    bool _turnable = false;
    int _wheel = 0; ///< eighths of a degree that have not become a sheet yet
};
