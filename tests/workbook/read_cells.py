#!/usr/bin/env python3
"""Prints the cells of a workbook's Sheet1 (xls) or of a CSV file (csv) for the workbook test.

Rows are separated by 0x1E and cells by 0x1F, in Latin-1, trailing empty cells and rows left out.
A cell that is neither empty nor text is an error. xlrd's warnings go to stderr.
"""
import csv
import sys

import xlrd


def cells(kind, path):
    if kind == "csv":
        with open(path, encoding="utf-8", newline="") as f:
            return [list(row) for row in csv.reader(f)]
    sheet = xlrd.open_workbook(path, logfile=sys.stderr).sheet_by_name("Sheet1")
    rows = []
    for r in range(sheet.nrows):
        row = []
        for c in range(sheet.ncols):
            cell = sheet.cell(r, c)
            if cell.ctype not in (xlrd.XL_CELL_EMPTY, xlrd.XL_CELL_TEXT):
                sys.exit("cell %d,%d is not text" % (r, c))
            row.append(cell.value)
        rows.append(row)
    return rows


rows = cells(sys.argv[1], sys.argv[2])
for row in rows:
    while row and row[-1] == "":
        row.pop()
while rows and not rows[-1]:
    rows.pop()
sys.stdout.buffer.write("\x1e".join("\x1f".join(row) for row in rows).encode("latin-1"))
