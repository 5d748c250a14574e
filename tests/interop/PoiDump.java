// Prints every numeric and text cell of a binary workbook as read by Apache POI:
// sheet <TAB> row <TAB> column <TAB> n|s <TAB> value (text with \t, \n and \\ escaped).
import java.io.FileInputStream;
import java.io.PrintStream;
import org.apache.poi.hssf.usermodel.HSSFWorkbook;
import org.apache.poi.ss.usermodel.Cell;
import org.apache.poi.ss.usermodel.CellType;
import org.apache.poi.ss.usermodel.Row;
import org.apache.poi.ss.usermodel.Sheet;

public class PoiDump {
    public static void main(String[] args) throws Exception {
        PrintStream out = new PrintStream(System.out, true, "UTF-8");
        try (HSSFWorkbook book = new HSSFWorkbook(new FileInputStream(args[0]))) {
            for (int s = 0; s < book.getNumberOfSheets(); s++) {
                Sheet sheet = book.getSheetAt(s);
                String name = book.getSheetName(s);
                for (Row row : sheet) {
                    for (Cell cell : row) {
                        String prefix = name + "\t" + row.getRowNum() + "\t" + cell.getColumnIndex() + "\t";
                        if (cell.getCellType() == CellType.NUMERIC) {
                            out.println(prefix + "n\t" + Double.toString(cell.getNumericCellValue()));
                        } else if (cell.getCellType() == CellType.STRING) {
                            String text = cell.getStringCellValue().replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n");
                            out.println(prefix + "s\t" + text);
                        }
                    }
                }
            }
        }
    }
}
