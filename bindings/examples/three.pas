{ Reads the bundled prices and shows the last values of three indicators, through the generated declarations. }
program three;

{$ifdef FPC}{$mode delphi}{$endif}

uses
  qvlib60;

procedure Check(status: LongInt; const what: string);
begin
  if status < 0 then
  begin
    WriteLn(what, ': ', status);
    Halt(1);
  end;
end;

procedure Show(const name: string; const series: TQvArray);
var
  last: PDouble;
begin
  last := series.data;
  Inc(last, series.size - 1);
  WriteLn(name, ' ', last^:0:6);
end;

var
  bars: TQvBars;
  average, strength, range: TQvArray;
begin
  FillChar(bars, SizeOf(bars), 0);
  FillChar(average, SizeOf(average), 0);
  FillChar(strength, SizeOf(strength), 0);
  FillChar(range, SizeOf(range), 0);
  Check(qvFILEread('TXT', @bars, PAnsiChar(AnsiString(ParamStr(1))), 'SPX.CSV', 0, -1), 'read');
  Check(qvSimpleMA(@bars.close, @average, 200, 0), 'average');
  Check(qvRSI(@bars.close, @strength, 14, 0), 'strength');
  Check(qvATR(@bars, @range, 14, 0), 'range');
  Show('sma(200)', average);
  Show('rsi(14)', strength);
  Show('atr(14)', range);
  qvFreeArray(@range);
  qvFreeArray(@strength);
  qvFreeArray(@average);
  qvFreeBars(@bars);
end.
