// Peer: writes (node sheetjs.js write OUT) or loads (node sheetjs.js load IN) the workload with SheetJS.
const XLSX = require("xlsx");
const [mode, file] = process.argv.slice(2);
if (mode === "write") {
  const texts = [];
  for (let i = 0; i < 5000; i++) texts.push("text value " + ((i * 7919) % 100000));
  const rows = [];
  for (let r = 0; r < 65536; r++) {
    const row = [r];
    for (let c = 1; c <= 6; c++) row.push(r * 1.5 + c / 7.0);
    for (let c = 7; c <= 9; c++) row.push(texts[(r * 31 + c) % 5000]);
    rows.push(row);
  }
  const book = XLSX.utils.book_new();
  XLSX.utils.book_append_sheet(book, XLSX.utils.aoa_to_sheet(rows), "Sheet1");
  XLSX.writeFile(book, file, { bookType: "biff8" });
} else {
  const book = XLSX.readFile(file);
  const sheet = book.Sheets[book.SheetNames[0]];
  let cells = 0;
  for (const key in sheet) if (key[0] !== "!") cells++;
  console.log(cells + " cells");
}
