# Peer: loads the workload with xlrd and visits every cell.
import sys
import xlrd

book = xlrd.open_workbook(sys.argv[1])
sheet = book.sheet_by_index(0)
cells = 0
for r in range(sheet.nrows):
    for value in sheet.row_values(r):
        cells += 1
print(cells, "cells")
