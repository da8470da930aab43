// The printed input tables: the printout's lines on the pages of a printer or a PDF file,
// under a running header. Qt GUI only (no widgets), so the batch tool writes the same pages.
#pragma once

#include <string>
#include <vector>

#include <QDateTime>

#include "report/input_printout.h"

class QPagedPaintDevice;
class QPaintDevice;
class QPainter;

namespace pvx {

// The two fonts of the pages: the header in a sans font of size 10, the tables in a fixed-pitch
// font of size 8 ("Arial" and "Courier New" where the platform has them, else its own of the kind).
QFont Print_Header_Font();
QFont Print_Table_Font();

// The date and time of the header: "dddd d-m-yyyy" (day and month without leading zeros, the
// day's name in English) and "h:mm".
std::string Print_Date_Text(const QDate& date);
std::string Print_Time_Text(const QTime& time);

// How many table lines fit on a page of `device` below the header block.
int Print_Lines_Per_Page(QPaintDevice& device, int header_lines);

// Draws one page on `device` (a page of a printer or PDF, or an image for a preview): the header
// with "page `page` of `count`" and the page's table lines.
void Draw_Print_Page(QPainter& painter, QPaintDevice& device, const std::vector<std::string>& header,
                     const std::vector<std::string>& lines, int page, int count, const QDateTime& when);

// Draws `layout` on the pages of `device` (its page size and margins as set), each page headed by
// `header` (Printout_Header) in the header font, with the date, the time and "page n of N" at its
// right. The lines are paged by Paginate with Print_Lines_Per_Page. Returns the page count; an
// empty layout draws nothing and returns 0, and so does a device that cannot be painted on.
int Print_Pages(QPagedPaintDevice& device, const std::vector<std::string>& header, const Print_Layout& layout,
                const QDateTime& when);

}  // namespace pvx
