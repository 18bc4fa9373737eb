// Reads the bundled prices and shows the last values of three indicators, through the generated declarations.
using System;
using System.Globalization;
using QVLIB60;

static class Three {
  static void Check(int status, string what) {
    if (status < 0) throw new Exception(what + ": " + status);
  }

  static void Show(string name, ref QvArray series) {
    double last = Qv.qvGetArrayItem(ref series, series.size - 1);
    Console.WriteLine(name + " " + last.ToString("F6", CultureInfo.InvariantCulture));
  }

  static int Main(string[] args) {
    Qv.CheckLayouts();
    QvBars bars = new QvBars();
    QvArray average = new QvArray(), strength = new QvArray(), range = new QvArray();
    Check(Qv.qvFILEread("TXT", ref bars, args[0], "SPX.CSV", 0, -1), "read");
    Check(Qv.qvSimpleMA(ref bars.close, ref average, 200, 0), "average");
    Check(Qv.qvRSI(ref bars.close, ref strength, 14, 0), "strength");
    Check(Qv.qvATR(ref bars, ref range, 14, 0), "range");
    Show("sma(200)", ref average);
    Show("rsi(14)", ref strength);
    Show("atr(14)", ref range);
    Qv.qvFreeArray(ref range);
    Qv.qvFreeArray(ref strength);
    Qv.qvFreeArray(ref average);
    Qv.qvFreeBars(ref bars);
    return 0;
  }
}
