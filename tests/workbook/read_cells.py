# Prints the cells of a workbook's Sheet1 (xls) or of a CSV file (csv) for the workbook test: rows
# separated by 0x1E, cells by 0x1F, in Latin-1. A cell neither empty nor text is an error.
import csv
import sys

import xlrd

kind, path = sys.argv[1:3]
if kind == "csv":
    with open(path, encoding="utf-8", newline="") as f:
        rows = list(csv.reader(f))
else:
    sheet = xlrd.open_workbook(path, logfile=sys.stderr).sheet_by_name("Sheet1")
    if any(t not in (xlrd.XL_CELL_EMPTY, xlrd.XL_CELL_TEXT) for r in range(sheet.nrows) for t in sheet.row_types(r)):
        sys.exit("a cell is not text")
    rows = [sheet.row_values(r) for r in range(sheet.nrows)]
sys.stdout.buffer.write("\x1e".join("\x1f".join(row) for row in rows).encode("latin-1"))
