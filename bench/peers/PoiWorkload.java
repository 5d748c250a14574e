// Peer: writes (write OUT) or loads (load IN) the workload with Apache POI's HSSF.
import java.io.FileInputStream;
import java.io.FileOutputStream;
import org.apache.poi.hssf.usermodel.HSSFWorkbook;
import org.apache.poi.ss.usermodel.Cell;
import org.apache.poi.ss.usermodel.Row;
import org.apache.poi.ss.usermodel.Sheet;

public class PoiWorkload {
    public static void main(String[] args) throws Exception {
        if (args[0].equals("write")) {
            String[] texts = new String[5000];
            for (int i = 0; i < 5000; i++) texts[i] = "text value " + (i * 7919 % 100000);
            try (HSSFWorkbook book = new HSSFWorkbook(); FileOutputStream out = new FileOutputStream(args[1])) {
                Sheet sheet = book.createSheet("Sheet1");
                for (int r = 0; r < 65536; r++) {
                    Row row = sheet.createRow(r);
                    row.createCell(0).setCellValue(r);
                    for (int c = 1; c <= 6; c++) row.createCell(c).setCellValue(r * 1.5 + c / 7.0);
                    for (int c = 7; c <= 9; c++) row.createCell(c).setCellValue(texts[(r * 31 + c) % 5000]);
                }
                book.write(out);
            }
        } else {
            long cells = 0;
            try (HSSFWorkbook book = new HSSFWorkbook(new FileInputStream(args[1]))) {
                for (Row row : book.getSheetAt(0)) for (Cell cell : row) cells++;
            }
            System.out.println(cells + " cells");
        }
    }
}
