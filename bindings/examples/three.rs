//! Reads the bundled prices and shows the last values of three indicators, through the generated declarations.
mod qvlib60;

use qvlib60::*;
use std::ffi::CString;

fn check(status: i32, what: &str) {
    if status < 0 {
        eprintln!("{what}: {status}");
        std::process::exit(1);
    }
}

fn show(name: &str, series: &QvArray) {
    println!("{name} {:.6}", unsafe { qvGetArrayItem(series, series.size - 1) });
}

fn text(s: &str) -> CString {
    CString::new(s).unwrap()
}

fn main() {
    let (kind, file) = (text("TXT"), text("SPX.CSV"));
    let directory = text(&std::env::args().nth(1).expect("a directory"));
    // An all-zero record is empty.
    let mut bars: QvBars = unsafe { std::mem::zeroed() };
    let (mut average, mut strength, mut range): (QvArray, QvArray, QvArray) = unsafe { std::mem::zeroed() };
    unsafe {
        let read = qvFILEread(kind.as_ptr(), &mut bars, directory.as_ptr(), file.as_ptr(), 0, -1);
        check(read, "read");
        check(qvSimpleMA(&bars.close, &mut average, 200, 0), "average");
        check(qvRSI(&bars.close, &mut strength, 14, 0), "strength");
        check(qvATR(&bars, &mut range, 14, 0), "range");
        show("sma(200)", &average);
        show("rsi(14)", &strength);
        show("atr(14)", &range);
        for series in [&mut range, &mut strength, &mut average] {
            qvFreeArray(series);
        }
        qvFreeBars(&mut bars);
    }
}
