"""QVLIB60 for Python: technical analysis over numpy arrays and pandas tables.

    import qvlib60 as qv

    bars = qv.read("data/text/SPX.CSV")
    qv.rsi(bars.close, 14)
    qv.bollinger(bars, 2, 20).upper
    qv.eval("rsi(14) < 30 and close > sma(200)", bars)

docs/python.md is a tour.
"""
from . import _arrays, _core, bars as _bars, catalogue, dates, results as _results

_core.connect(_arrays.doubles, _arrays.index_of, _arrays.wrapped, _results.result_type, dates.number, _bars.Bars,
              _bars.of_frame)

from .backtests import *  # noqa: E402
from .bars import *  # noqa: E402
from .batches import *  # noqa: E402
from .catalogue import calculations, info  # noqa: E402
from .charts import *  # noqa: E402
from .files import *  # noqa: E402
from .finance import *  # noqa: E402
from .formulas import *  # noqa: E402
from .indicators import *  # noqa: E402
from .patterns import *  # noqa: E402
from .screens import *  # noqa: E402
from .simulator import *  # noqa: E402
from .streams import *  # noqa: E402
from .sweeps import *  # noqa: E402

__version__: str = _core.version
