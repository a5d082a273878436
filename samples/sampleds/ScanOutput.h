// Where a scan's pages go: one PNG per page side and one PDF of the whole scan, each page of it as
// large as the side at its resolution.
#pragma once

#include "SaneDevice.h"

#include <memory>
#include <string>

class QPdfWriter;
class QPainter;

class ScanOutput {
public:
    // Writes into folder (made when missing); the PDF is scan.pdf there.
    explicit ScanOutput(std::string folder);
    ~ScanOutput();
    ScanOutput(const ScanOutput&) = delete;
    ScanOutput& operator=(const ScanOutput&) = delete;

    // Adds a side: page-NNN-front.png (or -back) and a page of the PDF. False, with the reason in
    // *error, when a file cannot be written.
    bool add(const SaneImage& image, int dpi, int page, bool back, std::string* error);
    // Ends the PDF; the number of its pages.
    int finish();
    const std::string& folder() const { return m_folder; }
    std::string pdfPath() const;

private:
    std::string m_folder;
    std::unique_ptr<QPdfWriter> m_pdf;
    std::unique_ptr<QPainter> m_painter;
    int m_pdfPages = 0;
};
