# Peer: writes the workload with xlwt.
import sys
import xlwt

texts = ["text value %d" % (i * 7919 % 100000) for i in range(5000)]
book = xlwt.Workbook()
sheet = book.add_sheet("Sheet1")
for r in range(65536):
    row = sheet.row(r)
    row.set_cell_number(0, r)
    for c in range(1, 7):
        row.set_cell_number(c, r * 1.5 + c / 7.0)
    for c in range(7, 10):
        row.set_cell_text(c, texts[(r * 31 + c) % 5000])
    if r % 1000 == 0:
        sheet.flush_row_data()
book.save(sys.argv[1])
