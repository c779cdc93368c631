#pragma once

#include "reports/ReportFrame.h"

// The charts of the reports, drawn with Qt Charts: a design with a chart
// gets a page more in the viewer, on paper and in PDF files.
namespace ReportChart {

// Makes the frame draw charts with paint(); called by the viewer.
void install();
void paint(QPainter &painter, const QRectF &area, const Reports::ChartData &data);

} // namespace ReportChart
