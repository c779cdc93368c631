#include "reports/ui/ReportChart.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QGraphicsScene>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <QPainter>
#include <QStackedBarSeries>
#include <QValueAxis>

namespace ReportChart {

void install()
{
    if (!Reports::hasChartPainter())
        Reports::setChartPainter(&paint);
}

void paint(QPainter &painter, const QRectF &area, const Reports::ChartData &data)
{
    if (data.isEmpty() || area.isEmpty())
        return;
    using Kind = Reports::DesignChart::Kind;
    QGraphicsScene scene;
    auto *chart = new QChart;   // the scene owns it
    scene.addItem(chart);
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundVisible(false);
    chart->setDropShadowEnabled(false);
    QFont small(QStringLiteral("DejaVu Sans"));
    small.setPixelSize(11);

    auto *axisX = new QBarCategoryAxis;
    axisX->append(data.categories);
    axisX->setLabelsFont(small);
    auto *axisY = new QValueAxis;
    axisY->setLabelFormat(QStringLiteral("%.0f"));
    axisY->setLabelsFont(small);
    axisY->setTitleText(data.caption);
    axisY->setTitleFont(small);
    chart->addAxis(axisX, Qt::AlignBottom);
    chart->addAxis(axisY, Qt::AlignLeft);

    double low = 0, high = 0;
    auto widen = [&](double v) { low = qMin(low, v); high = qMax(high, v); };
    if (data.kind == Kind::Line) {
        for (int s = 0; s < data.series.size(); ++s) {
            auto *line = new QLineSeries;
            line->setName(data.seriesNames.value(s));
            for (int k = 0; k < data.series.at(s).size(); ++k) {
                line->append(k, data.series.at(s).at(k).toDouble());
                widen(data.series.at(s).at(k).toDouble());
            }
            chart->addSeries(line);
            line->attachAxis(axisX);
            line->attachAxis(axisY);
        }
    } else {
        QAbstractBarSeries *bars = data.kind == Kind::Stacked ? static_cast<QAbstractBarSeries *>(new QStackedBarSeries)
                                                               : static_cast<QAbstractBarSeries *>(new QBarSeries);
        for (int s = 0; s < data.series.size(); ++s) {
            auto *set = new QBarSet(data.seriesNames.value(s));
            for (const Money &m : data.series.at(s)) {
                *set << m.toDouble();
                if (data.kind != Kind::Stacked)
                    widen(m.toDouble());
            }
            bars->append(set);
        }
        if (data.kind == Kind::Stacked) {
            // A stack reaches from the sum of its negative parts to the sum
            // of its positive ones.
            for (int k = 0; k < data.categories.size(); ++k) {
                double up = 0, down = 0;
                for (const auto &series : data.series)
                    (series.at(k).cents() >= 0 ? up : down) += series.at(k).toDouble();
                widen(up);
                widen(down);
            }
        }
        chart->addSeries(bars);
        bars->attachAxis(axisX);
        bars->attachAxis(axisY);
    }
    // The total of each month, written over it.
    if (data.series.size() > 1 || data.kind == Kind::Bar) {
        // Only the figures show: no line joins them, and the legend has
        // no entry for them.
        auto *totals = new QLineSeries;
        totals->setName(QStringLiteral("TOTAL"));
        totals->setPen(QPen(Qt::transparent));
        totals->setPointLabelsColor(QColor(30, 30, 30));
        for (int k = 0; k < data.totals.size(); ++k) {
            totals->append(k, data.totals.at(k).toDouble());
            widen(data.totals.at(k).toDouble());
        }
        totals->setPointLabelsVisible(true);
        totals->setPointLabelsFormat(QStringLiteral("@yPoint"));
        totals->setPointLabelsFont(small);
        totals->setPointLabelsClipping(false);
        chart->addSeries(totals);
        totals->attachAxis(axisX);
        totals->attachAxis(axisY);
        for (QLegendMarker *marker : chart->legend()->markers(totals))
            marker->setVisible(false);
    }
    const double pad = qMax(1.0, (high - low) * 0.08);
    axisY->setRange(low < 0 ? low - pad : 0, high + pad);
    axisY->applyNiceNumbers();
    chart->legend()->setAlignment(Qt::AlignBottom);
    chart->legend()->setFont(small);

    // Laid out at a screen's size in the page's proportions, then scaled
    // into the page.
    const QSizeF size(1100, 1100 * area.height() / area.width());
    chart->setGeometry(QRectF(QPointF(0, 0), size));
    scene.setSceneRect(QRectF(QPointF(0, 0), size));
    painter.save();
    scene.render(&painter, area, QRectF(QPointF(0, 0), size), Qt::KeepAspectRatio);
    painter.restore();
}

} // namespace ReportChart
