"""The pictures of the pages about calculations, drawn by qv from the bundled prices."""
import csv
import subprocess
from pathlib import Path

PRICES = Path(__file__).resolve().parent.parent / "data/text/SPX.CSV"
LAST, BARS, BARS_OF_MARKS, AFTER = "2019-12-31", 100, 50, 10

# What stands in a picture for series that a bar set does not hold.
STAND_INS = {"b": "sma(50)", "w": "atr(14)", "marks": "close > sma(20)", "adv": "close - low", "dec": "high - close",
             "up": "close - low", "down": "high - close", "unchanged": "open - low", "advVol": "volume",
             "decVol": "volume[1]"}


def run(tool, *arguments):
    return subprocess.run([tool, *arguments], check=True, capture_output=True, text=True).stdout


def last_marks(tool, formulas):
    """The last bars at which each formula is not 0, a number of bars later."""
    if not formulas:
        return {}
    rows = list(csv.reader(run(tool, "calc", PRICES, *formulas, "--csv").splitlines()))
    found = {}
    for column, formula in enumerate(formulas, 2):
        marks = [i for i, row in enumerate(rows) if i > BARS and row[column] not in ("", "0")]
        if marks:
            found[formula] = rows[min(marks[-1] + AFTER, len(rows) - 1)][0]
    return found


def copy_of_prices(path, lines):
    path.write_text("\n".join(lines) + "\n")
    return path


def with_open_interest(directory):
    """The bundled prices with the volumes as open interest, too."""
    head, *rows = PRICES.read_text().splitlines()
    rows = [f"{row},{row.split(',')[5]}" for row in rows]
    return copy_of_prices(Path(directory) / "open_interest.csv", [head + ",Open Interest", *rows])


def of_a_year_before(directory):
    """The bundled prices, each with the date 252 bars later."""
    head, *rows = PRICES.read_text().splitlines()
    late = [f"{now.split(',')[0]},{before.split(',', 1)[1]}" for before, now in zip(rows, rows[252:])]
    return copy_of_prices(Path(directory) / "year_before.csv", [head, *late])


def draw(tool, directory, pictures):
    """pictures: (file, title, formula, whether it marks bars, whether it reads open interest, whether it compares two
    bar sets) of each."""
    last = last_marks(tool, [formula for _, _, formula, marks, _, _ in pictures if marks])
    prices, other = with_open_interest(directory), of_a_year_before(directory)
    for file, title, formula, marks, open_interest, compares in pictures:
        if marks and formula not in last:
            title += ": not in these prices"
        run(tool, "chart", prices if open_interest else PRICES, formula, "--to", last.get(formula, LAST), "--last",
            str(BARS_OF_MARKS if marks else BARS), "--title", title, "--size", "720x420", "-o", Path(directory) / file,
            *(["--against", other] if compares else []))
    prices.unlink()
    other.unlink()
