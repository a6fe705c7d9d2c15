// Shows the ports in the data of the page. Every text of the data becomes a text node and is never
// parsed as HTML.
'use strict';

const data = JSON.parse(document.getElementById('data').textContent);

const VERDICTS = ['ok', 'unknown', 'warning', 'critical']; // by number, as in the data
const WORST_FIRST = [3, 2, 1, 0];
const BOUNDS = ['High alarm', 'Low alarm', 'High warning', 'Low warning'];
const STATES = ['', 'not implemented', 'not read', 'not ready'];
const LANE_FLAGS = ['RX LOS', 'TX LOS', 'RX LOL', 'TX LOL', 'TX fault', 'Adaptive EQ fault'];
const MAX_LANES = 8;
const PAGE_SIZE = 50;
const WORST_SHOWN = 8;
const MAX_PRINTED = 1000; // rows and findings

// The quantities of a lane, in the order of the data. `about` matches the rules that concern them.
const POWER = { unit: 'dBm', of: toDbm, decimals: 2 };
const QUANTITIES = [
  { key: 'rx_power', name: 'RX power', about: /^(rx-|lane-im|outlier|link-loss)/, ...POWER },
  { key: 'tx_power', name: 'TX power', about: /^tx-(power|fault)/, ...POWER },
  { key: 'tx_bias', name: 'TX bias', about: /^tx-bias/, unit: 'mA', of: (v) => v, decimals: 2 },
];
const TEMPERATURE = { key: 'temperature', name: 'Temperature', about: /^temperature/, unit: '°C' };
const VOLTAGE = { key: 'voltage', name: 'Supply voltage', about: /^voltage/, unit: 'V' };
const LENGTH_RULE = /^length-mismatch/;

function toDbm(milliwatts) {
  return milliwatts > 0 ? 10 * Math.log10(milliwatts) : -Infinity;
}

// ---------------------------------------------------------------------------------------------
// Ports
// ---------------------------------------------------------------------------------------------

const known = (values) => values.filter((value) => value !== undefined && value !== null);
const isUsed = (port, lane) => ((port.used >> (lane - 1)) & 1) === 1;

// The value of a lane in the displayed unit; undefined without one.
function laneValue(port, quantity, lane) {
  const value = port[quantity.key]?.[lane - 1];
  return value === undefined || value === null ? undefined : quantity.of(value);
}

function usedValues(port, quantity) {
  const values = [];
  for (let lane = 1; lane <= MAX_LANES; ++lane) {
    if (isUsed(port, lane)) values.push(laneValue(port, quantity, lane));
  }
  return known(values);
}

function extreme(choose, values) {
  return values.length === 0 ? undefined : choose(...values);
}

function preparePort(port, index) {
  Object.assign(port, port.readings); // on top of its identity
  port.index = index;
  port.verdict = 0;
  port.findings = [];
  port.type = data.models[port.model];
  port.address = `${port.guid}/${port.number}`;
  port.name = port.label ?? port.address;
  port.length = port.type.length_m.cable ?? undefined;
  port.lowestRx = extreme(Math.min, usedValues(port, QUANTITIES[0]));
  port.lowestTx = extreme(Math.min, usedValues(port, QUANTITIES[1]));
  port.highestBias = extreme(Math.max, usedValues(port, QUANTITIES[2]));
}

function prepareFinding([index, rule, severity, lane, sentence]) {
  const port = data.ports[index];
  port.verdict = Math.max(port.verdict, severity);
  port.findings.push({ rule, name: data.rules[rule].name, severity, lane, sentence });
}

// The texts that the search looks at.
function prepareSearch(port) {
  const { type } = port;
  const rules = port.findings.map((finding) => finding.name);
  port.searched = known([
    ...[port.label, port.address, port.node, port.serial_number, VERDICTS[port.verdict]],
    ...[type.vendor, type.part_number, type.firmware, ...rules],
  ])
    .join('\n')
    .toLowerCase();
}

// The changes since the earlier snapshot. A change by its limit has the size 1. Voltages have no
// limit.
const CHANGE_LIMITS = {
  dBm: data.tolerances.power_db,
  mA: data.tolerances.bias_percent,
  '°C': data.tolerances.temperature_c,
  V: Infinity,
};

function changeOf(name, lane, before, after, unit) {
  if (before === undefined || after === undefined) return [];
  const dark = (value) => (unit === 'dBm' ? Math.max(value, data.dark_dbm) : value);
  const difference = dark(after) - dark(before);
  if (difference === 0) return [{ name, lane, before, after, unit, difference, size: 0 }];
  const amount = unit === 'mA' ? (100 * difference) / Math.abs(before) : difference; // mA: percent
  const size = Math.abs(amount) / CHANGE_LIMITS[unit];
  return [{ name, lane, before, after, unit, difference, size }];
}

function isSwapped({ earlier, serial_number: serial }) {
  return Boolean(earlier?.serial_number && serial && earlier.serial_number !== serial);
}

// All changes, the largest first; none for a module that was swapped.
function changesOf(port) {
  const { earlier } = port;
  if (!earlier || isSwapped(port)) return [];
  const changes = [TEMPERATURE, VOLTAGE].flatMap(({ key, name, unit }) =>
    changeOf(name, 0, earlier[key], port[key], unit),
  );
  for (const quantity of QUANTITIES) {
    for (let lane = 1; lane <= MAX_LANES; ++lane) {
      const before = laneValue(earlier, quantity, lane);
      const after = laneValue(port, quantity, lane);
      changes.push(...changeOf(quantity.name, lane, before, after, quantity.unit));
    }
  }
  return changes.sort((one, other) => other.size - one.size);
}

const hasEarlier = data.gone !== undefined;

data.ports.forEach(preparePort);
if (hasEarlier) data.ports.forEach((port) => (port.changes = changesOf(port)));
data.findings.forEach(prepareFinding);
data.ports.forEach(prepareSearch);

// The worst severity of the findings of a lane; findings of lane 0 concern all lanes.
function severityOf(port, about, lane) {
  let worst = 0;
  for (const finding of port.findings) {
    const concerns = !lane || finding.lane === 0 || finding.lane === lane;
    if (concerns && about.test(finding.name)) worst = Math.max(worst, finding.severity);
  }
  return worst;
}

// ---------------------------------------------------------------------------------------------
// Elements
// ---------------------------------------------------------------------------------------------

const byId = (id) => document.getElementById(id);

// An element with attributes; functions are listeners. Texts among the children are text nodes.
function el(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (typeof value === 'function') element.addEventListener(name, value);
    else if (value !== undefined) element.setAttribute(name, value);
  }
  element.append(...children.filter((child) => child !== undefined && child !== ''));
  return element;
}

const counted = (count, one, many = `${one}s`) =>
  `${count.toLocaleString('en')} ${count === 1 ? one : many}`;

const badge = (verdict) => el('span', { class: `badge ${VERDICTS[verdict]}` }, VERDICTS[verdict]);

function shown(value, decimals = 2, unit = '') {
  if (value === undefined || value === null) return '–';
  if (value === -Infinity) return 'no light';
  return `${value.toFixed(decimals).replace('-', '−')}${unit && ` ${unit}`}`;
}

const portLink = (port) =>
  el('button', { type: 'button', class: 'link', click: () => openPort(port) }, port.name);

// ---------------------------------------------------------------------------------------------
// The selection: everything below the figures shows the selected ports
// ---------------------------------------------------------------------------------------------

const PROPERTIES = {
  verdict: { name: 'Verdict', of: (port) => VERDICTS[port.verdict] },
  rule: { name: 'Rule', has: (port, rule) => port.findings.some((found) => found.name === rule) },
  vendor: { name: 'Vendor', of: (port) => port.type.vendor },
  part: { name: 'Part number', of: (port) => port.type.part_number },
  firmware: { name: 'Firmware', of: (port) => port.type.firmware },
};

const state = { words: [], wanted: {}, sortedBy: 'verdict', descending: true, page: 0 };
state.isPrinting = false;
state.showsAll = false;
let selected = [];

function isSelected(port) {
  for (const [key, value] of Object.entries(state.wanted)) {
    const { of, has } = PROPERTIES[key];
    if (has ? !has(port, value) : of(port) !== value) return false;
  }
  return state.words.every((word) => port.searched.includes(word));
}

function isWanted(key, value) {
  return state.wanted[key] === value;
}

// Selects the ports with this value; selecting it again selects all.
function toggle(key, value) {
  if (isWanted(key, value)) delete state.wanted[key];
  else state.wanted[key] = value;
  select();
}

function select() {
  state.page = 0;
  state.showsAll = false;
  selected = data.ports.filter(isSelected);
  show();
}

function show() {
  showVerdicts();
  showFilter();
  showWorst();
  showRules();
  showChanges();
  showPlots();
  showCounts();
  showTable();
}

// Replaces the children of an element, and keeps the focus on the button with the same text.
function fill(element, ...children) {
  const focused = element.contains(document.activeElement) && document.activeElement.textContent;
  element.replaceChildren(...children);
  if (!focused) return;
  const again = [...element.querySelectorAll('button')].find((b) => b.textContent === focused);
  again?.focus({ preventScroll: true });
}

// ---------------------------------------------------------------------------------------------
// Figures, filter, findings
// ---------------------------------------------------------------------------------------------

function countBy(ports, of) {
  const counts = new Map();
  for (const port of ports) {
    for (const value of known([of(port)].flat())) counts.set(value, (counts.get(value) ?? 0) + 1);
  }
  return [...counts].sort((a, b) => b[1] - a[1]);
}

const verdictCounts = new Map(countBy(data.ports, (port) => port.verdict));

function showVerdicts() {
  const figure = (verdict) => {
    const name = VERDICTS[verdict];
    const attributes = { type: 'button', class: name, 'aria-pressed': isWanted('verdict', name) };
    const count = (verdictCounts.get(verdict) ?? 0).toLocaleString('en');
    const press = () => toggle('verdict', name);
    return el(
      'button',
      { ...attributes, click: press },
      el('strong', {}, count),
      el('i', { class: `mark ${name}` }),
      name,
    );
  };
  fill(byId('verdicts'), ...WORST_FIRST.map(figure));
}

function showFilter() {
  const chip = ([key, value]) => {
    const text = `${PROPERTIES[key].name}: ${value} ×`;
    return el('button', { type: 'button', click: () => toggle(key, value) }, text);
  };
  fill(byId('chips'), ...Object.entries(state.wanted).map(chip));
  const all = counted(data.ports.length, 'port');
  byId('selected').textContent =
    selected.length === data.ports.length
      ? all
      : `${selected.length.toLocaleString('en')} of ${all}`;
}

// "2 to 5, 7 and 8" of ascending numbers
function listed(numbers) {
  const runs = [];
  for (const number of numbers) {
    const last = runs.at(-1);
    if (last && number === last.to + 1) last.to = number;
    else runs.push({ from: number, to: number });
  }
  const texts = runs.flatMap(({ from, to }) =>
    to > from + 1 ? [`${from} to ${to}`] : from === to ? [from] : [from, to],
  );
  return texts.length < 2 ? texts.join('') : `${texts.slice(0, -1).join(', ')} and ${texts.at(-1)}`;
}

// The findings of a port, those of one rule together.
function reasons(port) {
  const groups = new Map();
  for (const finding of port.findings) {
    const key = `${finding.rule} ${finding.severity}`;
    if (!groups.has(key)) groups.set(key, []);
    groups.get(key).push(finding);
  }
  return [...groups.values()].map(([first, ...others]) => {
    const lanes = others.map((finding) => finding.lane);
    const also =
      lanes.length > 0 ? ` Also lane${lanes.length > 1 ? 's' : ''} ${listed(lanes)}.` : '';
    const attributes = { class: `why ${VERDICTS[first.severity]}`, title: first.name };
    return el('p', attributes, first.sentence + also);
  });
}

function worstCard(port) {
  const part = known([port.type.vendor, port.type.part_number]).join(' ');
  const serial = el('span', { class: 'muted mono' }, port.serial_number ?? '');
  const head = el('div', { class: 'head' }, badge(port.verdict), portLink(port));
  head.append(el('span', { class: 'muted' }, part), serial);
  return el('li', { class: VERDICTS[port.verdict] }, head, ...reasons(port));
}

const badness = (port) => {
  const criticals = port.findings.filter((finding) => finding.severity === 3).length;
  return port.verdict * 1000 + criticals;
};

function showWorst() {
  const bad = selected.filter((port) => port.findings.length > 0);
  bad.sort((a, b) => badness(b) - badness(a));
  const most = state.isPrinting || state.showsAll ? MAX_PRINTED : WORST_SHOWN;
  fill(byId('worst'), ...bad.slice(0, most).map(worstCard));
  if (bad.length === 0) byId('worst').append(el('li', { class: 'ok' }, 'No findings.'));
  const more = byId('more');
  more.hidden = state.showsAll || bad.length <= most;
  more.textContent = `Show ${Math.min(bad.length, MAX_PRINTED) - WORST_SHOWN} more`;
}

const MOST_COUNTED = 12;

// The number of ports by value: buttons that select them, each with a bar for its share.
function bars(key, counts, describe = () => '') {
  const button = ([value, count]) => {
    const attributes = {
      type: 'button',
      'aria-pressed': isWanted(key, value),
      title: describe(value),
    };
    const name = el('span', {}, value);
    const number = el('span', {}, count.toLocaleString('en'));
    const bar = el('button', { ...attributes, click: () => toggle(key, value) }, name, number);
    bar.style.setProperty('--share', `${(100 * count) / counts[0][1]}%`);
    return el('li', {}, bar);
  };
  const others = counts.length - MOST_COUNTED;
  const rest = others > 0 ? [el('li', { class: 'muted' }, `and ${others} more`)] : [];
  return [...counts.slice(0, MOST_COUNTED).map(button), ...rest];
}

const meanings = new Map(data.rules.map((rule) => [rule.name, rule.meaning]));

function showRules() {
  const names = (port) => [...new Set(port.findings.map((finding) => finding.name))];
  fill(byId('rules'), ...bars('rule', countBy(selected, names), (rule) => meanings.get(rule)));
}

function showCounts() {
  const list = (key) => {
    const counts = countBy(selected, PROPERTIES[key].of);
    const title = el('h3', {}, `${PROPERTIES[key].name} (${counts.length.toLocaleString('en')})`);
    return el('div', {}, title, el('ul', { class: 'bars' }, ...bars(key, counts)));
  };
  fill(byId('counts'), ...['vendor', 'part', 'firmware'].map(list));
}

const signed = (value, decimals, unit) => (value > 0 ? '+' : '') + shown(value, decimals, unit);
const unitOfDifference = (unit) => (unit === 'dBm' ? 'dB' : unit);
const differenceText = ({ difference, unit }) =>
  signed(difference, unit === 'V' ? 3 : 2, unitOfDifference(unit));

const MAX_CHANGES = 10;

function showChanges() {
  byId('changes').hidden = !hasEarlier;
  if (!hasEarlier) return;
  const changed = selected.filter((port) => port.changes[0]?.size > 1);
  changed.sort((a, b) => b.changes[0].size - a.changes[0].size);
  const item = (port) => {
    const [{ name, lane, before, after, unit, ...change }] = port.changes;
    const place = lane === 0 ? '' : `, lane ${lane}`;
    const values = `${shown(before, 2)} to ${shown(after, 2, unit)}`;
    const text = `${name}${place}: ${differenceText({ ...change, unit })} (${values})`;
    return el('li', {}, portLink(port), ' ', text);
  };
  fill(byId('moved'), ...changed.slice(0, MAX_CHANGES).map(item));
  const swapped = selected.filter(isSwapped);
  const appeared = selected.filter((port) => !port.earlier);
  byId('changes-about').textContent =
    `Since ${timeText(data.earlier_taken_at)}: ${counted(changed.length, 'port')} changed by more than ` +
    `${CHANGE_LIMITS.dBm} dB, ${CHANGE_LIMITS['°C']} °C or ${CHANGE_LIMITS.mA} % of the bias, ` +
    `${counted(swapped.length, 'module')} swapped, ` +
    `${counted(appeared.length, 'port')} appeared, ${counted(data.gone.length, 'port')} gone.`;
}

const timeText = (time) => time.replace('T', ' ').replace('Z', ' UTC');

// ---------------------------------------------------------------------------------------------
// Plots
// ---------------------------------------------------------------------------------------------

const charts = new Map();
const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`);
const SHAPES = ['circle', 'rect', 'triangle', 'rectRot'];

// Points that would be drawn on top of each other become one, with the number of them.
class Points {
  constructor(xStep, yStep) {
    this.steps = [xStep, yStep];
    this.cells = VERDICTS.map(() => new Map());
  }

  add(severity, x, y, text, port) {
    const cell = `${Math.round(x / this.steps[0])} ${Math.round(y / this.steps[1])}`;
    const point = this.cells[severity].get(cell);
    if (point) ++point.count;
    else this.cells[severity].set(cell, { x, y, text, port, count: 1 });
  }

  datasets() {
    return this.cells.map((cells, severity) => ({
      type: 'scatter',
      data: [...cells.values()],
      pointStyle: SHAPES[severity],
      backgroundColor: colour(VERDICTS[severity]) + (severity === 0 ? '80' : ''),
      borderWidth: 0,
      radius: severity === 0 ? 3 : 5,
      hoverRadius: 6,
      order: -severity,
    }));
  }
}

// The most common thresholds of the selected ports: bound and value.
function commonThresholds(key, of) {
  const counts = new Map();
  for (const port of selected) {
    const thresholds = port.type.thresholds[key] ?? [];
    thresholds.forEach((value, bound) => {
      const at = value === null ? NaN : of(value);
      if (!Number.isFinite(at)) return;
      const text = `${bound} ${at}`;
      counts.set(text, (counts.get(text) ?? 0) + 1);
    });
  }
  const common = [...counts]
    .sort((a, b) => b[1] - a[1])
    .map(([text]) => text.split(' ').map(Number));
  const MOST_OF_A_BOUND = 2;
  return BOUNDS.flatMap((_, bound) =>
    common.filter(([b]) => b === bound).slice(0, MOST_OF_A_BOUND),
  );
}

// A straight line; those of alarms are solid.
function line(from, to, isAlarm, text) {
  return {
    type: 'line',
    data: [from, to].map(([x, y]) => ({ x, y, text })),
    borderColor: colour(isAlarm ? 'critical' : 'warning'),
    borderWidth: 1.5,
    borderDash: isAlarm ? [] : [5, 4],
    pointRadius: 0,
    pointHitRadius: 6,
    order: 1,
  };
}

function options(xTitle, yTitle) {
  const axis = (title) => ({
    type: 'linear',
    title: { display: true, text: title, color: colour('muted') },
    ticks: { color: colour('muted'), maxRotation: 0 },
    grid: { color: colour('line'), borderColor: colour('line') },
  });
  return {
    animation: false,
    normalized: true,
    maintainAspectRatio: false,
    scales: { x: axis(xTitle), y: axis(yTitle) },
    plugins: {
      legend: { display: false },
      tooltip: {
        filter: (_, index) => index < 6,
        callbacks: {
          title: () => '',
          label: ({ raw }) => raw.text + (raw.count > 1 ? ` and ${raw.count - 1} more there` : ''),
        },
      },
    },
    onClick: (_, [element], chart) => {
      const point = element && chart.data.datasets[element.datasetIndex].data[element.index];
      if (point?.port) openPort(point.port);
    },
  };
}

// Draws a plot, or removes it if it is empty.
function draw(id, title, summary, datasets, chartOptions) {
  charts.get(id)?.destroy();
  charts.delete(id);
  byId(`plot-${id}`)?.remove();
  if (!datasets) return;
  const canvas = el('canvas', { role: 'img', 'aria-label': `${title}: ${summary}` });
  const caption = el('figcaption', {}, el('h3', {}, title), summary);
  byId('plots').append(
    el('figure', { id: `plot-${id}` }, caption, el('div', { class: 'canvas' }, canvas)),
  );
  charts.set(id, new Chart(canvas, { data: { datasets }, options: chartOptions }));
}

// "104 lanes, -12.00 to 1.20 dBm, median 0.31 dBm"
function summarize(values, what, decimals, unit) {
  values.sort((a, b) => a - b);
  const at = (share) => shown(values[Math.floor(share * (values.length - 1))], decimals);
  return `${counted(values.length, what)}, ${at(0)} to ${at(1)} ${unit}, median ${at(0.5)} ${unit}`;
}

// A pseudo-random number from -0.5 to 0.5, always the same for a port.
const jitter = (index) => ((index * 0.618034) % 1) - 0.5;

function showLanePlot(quantity) {
  const { key, name, unit, decimals } = quantity;
  const points = new Points(0.04, unit === 'dBm' ? 0.1 : 0.25);
  const values = [];
  let lanes = 0;
  for (const port of selected) {
    for (let lane = 1; lane <= MAX_LANES; ++lane) {
      const value = isUsed(port, lane) ? laneValue(port, quantity, lane) : undefined;
      if (value === undefined) continue;
      lanes = Math.max(lanes, lane);
      values.push(value);
      const severity = port.verdict === 0 ? 0 : severityOf(port, quantity.about, lane);
      const text = `${port.name}, lane ${lane}: ${shown(value, decimals, unit)}`;
      const y = Math.max(value, unit === 'dBm' ? data.dark_dbm : value);
      points.add(severity, lane + 0.7 * jitter(port.index), y, text, port);
    }
  }
  if (values.length === 0) return draw(key);
  const x = [0.5, lanes + 0.5];
  const lines = commonThresholds(key, quantity.of).map(([bound, at]) =>
    line([x[0], at], [x[1], at], bound < 2, `${BOUNDS[bound]}: ${shown(at, decimals, unit)}`),
  );
  const chartOptions = options('Lane', unit);
  Object.assign(chartOptions.scales.x, { min: x[0], max: x[1], afterBuildTicks: wholeTicks });
  const summary = summarize(values, 'lane', decimals, unit);
  draw(key, name, summary, [...points.datasets(), ...lines], chartOptions);
}

function wholeTicks(axis) {
  axis.ticks = [];
  for (let value = Math.ceil(axis.min); value <= axis.max; ++value) axis.ticks.push({ value });
}

const BIN = 2; // degrees

function showTemperatures() {
  const bins = VERDICTS.map(() => new Map());
  const values = [];
  for (const port of selected) {
    const value = port.temperature;
    if (value === undefined) continue;
    values.push(value);
    const bin = Math.floor(value / BIN) * BIN + BIN / 2;
    const severity = severityOf(port, TEMPERATURE.about);
    bins[severity].set(bin, (bins[severity].get(bin) ?? 0) + 1);
  }
  if (values.length === 0) return draw('temperature');
  const columns = bins.map((counts, severity) => ({
    type: 'bar',
    stack: 'ports',
    data: [...counts].map(([x, y]) => {
      const range = `${x - BIN / 2} to ${x + BIN / 2} °C`;
      return { x, y, text: `${range}: ${counted(y, 'port')}, ${VERDICTS[severity]}` };
    }),
    backgroundColor: colour(VERDICTS[severity]),
    barPercentage: 0.94,
    categoryPercentage: 1,
    order: 2,
  }));
  const totals = [...bins.flatMap((counts) => [...counts])].reduce(
    (sums, [x, y]) => sums.set(x, (sums.get(x) ?? 0) + y),
    new Map(),
  );
  const highest = Math.max(...totals.values());
  const lines = commonThresholds('temperature', (value) => value).map(([bound, at]) =>
    line([at, 0], [at, highest], bound < 2, `${BOUNDS[bound]}: ${shown(at, 1, '°C')}`),
  );
  const chartOptions = options('°C', 'Ports');
  Object.assign(chartOptions.scales.x, { offset: false });
  Object.assign(chartOptions.scales.y, {
    min: 0,
    ticks: { ...chartOptions.scales.y.ticks, precision: 0 },
  });
  draw(
    'temperature',
    'Temperature',
    summarize(values, 'port', 1, '°C'),
    [...columns, ...lines],
    chartOptions,
  );
}

function showLengths() {
  const points = new Points(0.05, 0.05);
  let count = 0;
  let longest = 0;
  for (const port of selected) {
    if (port.length === undefined || port.measured === undefined) continue;
    ++count;
    longest = Math.max(longest, port.length, port.measured);
    const text = `${port.name}: stated ${port.length} m, measured ${shown(port.measured, 1, 'm')}`;
    points.add(severityOf(port, LENGTH_RULE), port.length, port.measured, text, port);
  }
  if (count === 0) return draw('length');
  const diagonal = line([0, 0], [longest, longest], false, 'As stated');
  Object.assign(diagonal, { borderColor: colour('muted'), borderDash: [2, 3] });
  const chartOptions = options('Stated, m', 'Measured, m');
  Object.assign(chartOptions.scales.x, { min: 0 });
  Object.assign(chartOptions.scales.y, { min: 0 });
  const summary = `${counted(count, 'cable')} with both lengths; the line is where they are equal`;
  draw(
    'length',
    'Measured and stated length',
    summary,
    [...points.datasets(), diagonal],
    chartOptions,
  );
}

function showPlots() {
  QUANTITIES.forEach(showLanePlot);
  showTemperatures();
  showLengths();
}

// ---------------------------------------------------------------------------------------------
// The table
// ---------------------------------------------------------------------------------------------

function reading(port, quantity, value, decimals) {
  const severity = severityOf(port, quantity.about);
  const beyond = severity > 1 ? ` beyond ${VERDICTS[severity]}` : '';
  return el('td', { class: `number${beyond}` }, shown(value, decimals));
}

const textCell = (of) => (port) => el('td', {}, of(port) ?? '–');

const COLUMNS = {
  verdict: { name: 'Verdict', of: badness, cell: (port) => el('td', {}, badge(port.verdict)) },
  port: {
    name: 'Port',
    of: (port) => port.name,
    cell: (port) => {
      const address = port.label ? el('small', { class: 'mono' }, port.address) : '';
      return el('td', {}, portLink(port), address);
    },
  },
  part: {
    name: 'Part number',
    title: 'Part number and vendor',
    of: (port) => port.type.part_number,
    cell: ({ type }) => el('td', {}, type.part_number ?? '–', el('small', {}, type.vendor ?? '')),
  },
  serial: { name: 'Serial number', of: (port) => port.serial_number },
  firmware: { name: 'Firmware', of: (port) => port.type.firmware },
  temperature: {
    name: '°C',
    title: 'Temperature',
    of: (port) => port.temperature,
    cell: (port) => reading(port, TEMPERATURE, port.temperature, 1),
  },
  rx: {
    name: 'RX dBm',
    title: 'Lowest RX power of a lane',
    of: (port) => port.lowestRx,
    cell: (port) => reading(port, QUANTITIES[0], port.lowestRx, 2),
  },
  tx: {
    name: 'TX dBm',
    title: 'Lowest TX power of a lane',
    of: (port) => port.lowestTx,
    cell: (port) => reading(port, QUANTITIES[1], port.lowestTx, 2),
  },
  bias: {
    name: 'Bias mA',
    title: 'Highest TX bias of a lane',
    of: (port) => port.highestBias,
    cell: (port) => reading(port, QUANTITIES[2], port.highestBias, 2),
  },
  length: {
    name: 'Length m',
    title: 'Stated length',
    of: (port) => port.length,
    cell: (port) => el('td', { class: 'number' }, port.length ?? '–'),
  },
};

if (hasEarlier) {
  const rxChange = (port) => {
    const [largest] = port.changes.filter((change) => change.name === 'RX power');
    return largest;
  };
  COLUMNS.change = {
    name: 'Change',
    title: 'Largest change of the RX power of a lane, in dB',
    of: (port) => rxChange(port)?.size,
    cell: (port) => {
      const change = rxChange(port);
      return el('td', { class: 'number' }, change ? differenceText(change) : '–');
    },
  };
}

const byText = new Intl.Collator('en', { numeric: true }).compare;

// Ports without a value come last, whatever the direction.
function sorted() {
  const { of } = COLUMNS[state.sortedBy];
  const direction = state.descending ? -1 : 1;
  const keyed = selected.map((port) => [of(port), port]);
  const compare = (a, b) => (typeof a === 'number' ? a - b : byText(a, b));
  keyed.sort(([a], [b]) => {
    if (a === undefined || b === undefined) return (a === undefined) - (b === undefined);
    return direction * compare(a, b);
  });
  return keyed.map(([, port]) => port);
}

function sortBy(key) {
  state.descending =
    state.sortedBy === key ? !state.descending : ['verdict', 'change'].includes(key);
  state.sortedBy = key;
  state.page = 0;
  showTable();
}

function showTable() {
  const heading = ([key, { name, title }]) => {
    const order = state.descending ? 'descending' : 'ascending';
    const attributes = { scope: 'col', 'aria-sort': key === state.sortedBy ? order : undefined };
    return el(
      'th',
      attributes,
      el('button', { type: 'button', title, click: () => sortBy(key) }, name),
    );
  };
  const row = (port) =>
    el('tr', {}, ...Object.values(COLUMNS).map((c) => (c.cell ?? textCell(c.of))(port)));
  const size = state.isPrinting ? MAX_PRINTED : PAGE_SIZE;
  const first = state.page * size;
  fill(byId('ports').tHead, el('tr', {}, ...Object.entries(COLUMNS).map(heading)));
  fill(
    byId('ports').tBodies[0],
    ...sorted()
      .slice(first, first + size)
      .map(row),
  );
  showPager(first);
}

function showPager(first) {
  const last = Math.min(first + PAGE_SIZE, selected.length);
  const turn = (name, step, isEnd) => {
    const move = () => {
      state.page += step;
      showTable();
    };
    const button = el('button', { type: 'button', click: move }, name);
    button.disabled = isEnd;
    return button;
  };
  const range =
    selected.length === 0 ? 'No ports' : `${first + 1} to ${last} of ${selected.length}`;
  const back = turn('Previous', -1, first === 0);
  fill(byId('pages'), back, turn('Next', 1, last >= selected.length), range);
}

// ---------------------------------------------------------------------------------------------
// One port
// ---------------------------------------------------------------------------------------------

const withUnit = (value, unit) =>
  value === null || value === undefined ? undefined : `${value} ${unit}`;

const code = (value) => {
  if (!value) return undefined;
  return value.name ?? `code ${value.code}`;
};

// The details of a port except its readings: names and values.
function facts(port) {
  const { type } = port;
  const length = type.length_m;
  const db = type.attenuation_db;
  const media = ['smf', 'om5', 'om4', 'om3', 'om2', 'om1'];
  return [
    ['Port GUID', port.guid],
    ['Port number', port.number],
    ['Node GUID', port.node],
    ['Other end', port.peer],
    ['Source', type.source],
    ['Query', port.status],
    ['Vendor', type.vendor],
    ['OUI', type.oui],
    ['Part number', type.part_number],
    ['Revision', type.revision],
    ['Serial number', port.serial_number],
    ['Date code', port.date_code],
    ['Lot', port.lot],
    ['Firmware', type.firmware],
    ['Form factor', code(type.identifier)],
    ['Connector', code(type.connector)],
    ['Technology', code(type.technology)],
    ['Compliance', code(type.compliance)],
    ['Medium', type.medium?.replace('_', ' ')],
    ['CDR vendor', type.cdr_vendor],
    ['Speeds', type.supported_speeds?.join(', ')],
    ['Nominal bit rate', withUnit(type.nominal_bitrate_gbps, 'Gb/s')],
    ['Power class', type.power.class],
    ['Maximum power', withUnit(type.power.max_w, 'W')],
    ['RX power is', type.rx_power_type?.replace('oma', 'OMA')],
    ['Stated length', withUnit(length.cable, 'm')],
    ['Measured length', withUnit(port.measured, 'm')],
    ...media.map((name) => [`Reach on ${name.toUpperCase()}`, withUnit(length[name], 'm')]),
    ...Object.entries(db).map(([at, value]) => [attenuationName(at), withUnit(value, 'dB')]),
  ].filter(([, value]) => value !== undefined && value !== null && value !== '');
}

// "2p5ghz" is 2.5 GHz.
const attenuationName = (key) => `Attenuation at ${key.replace('p', '.').replace('ghz', ' GHz')}`;

const raisedBounds = ([, raised]) => BOUNDS.filter((_, bound) => (raised >> bound) & 1);

function latchedText(flags) {
  const raised = raisedBounds(flags);
  if (raised.length > 0) return raised.join(', ').toLowerCase();
  return flags[0] === 0 ? '–' : 'none';
}

// A row of the table of readings. `convert` converts value and thresholds to the unit.
function readingRow(name, value, thresholds, flags, format, severity, stateName, change) {
  const cell = (of) => el('td', { class: 'number' }, of);
  const beyond = severity > 1 ? ` beyond ${VERDICTS[severity]}` : '';
  const current = el(
    'td',
    { class: `number${beyond}` },
    value === undefined ? stateName : format(value),
  );
  const limits = BOUNDS.map((_, bound) => thresholds?.[bound] ?? undefined);
  const cells = limits.map((limit) => cell(limit === undefined ? '–' : format(limit)));
  const head = el('th', { scope: 'row' }, name);
  const changed = hasEarlier ? [cell(change ?? '–')] : [];
  return el('tr', {}, head, current, ...changed, ...cells, el('td', {}, latchedText(flags)));
}

function observableChange(port, name, place, value) {
  if (isSwapped(port)) return undefined;
  const before = port.earlier?.observables?.find((one) => one[0] === name && one[1] === place)?.[3];
  return known([value, before]).length === 2 ? value - before : undefined;
}

function readingRows(port) {
  const flags = data.flags[port.flags];
  const rows = [];
  const add = (at, name, quantity, value, format, lane) => {
    const stateName = STATES[flags.states[at]] || '–';
    const severity = severityOf(port, quantity.about, lane);
    const thresholds = port.type.thresholds[quantity.key];
    const isSame = (change) => change.name === quantity.name && change.lane === (lane ?? 0);
    const change = port.changes?.find(isSame);
    const moved = change && differenceText(change);
    const latched = flags.readings[at];
    rows.push(readingRow(name, value, thresholds, latched, format, severity, stateName, moved));
  };
  add(0, 'Temperature', TEMPERATURE, port.temperature, (v) => shown(v, 1, '°C'));
  add(1, 'Supply voltage', VOLTAGE, port.voltage, (v) => shown(v, 3, 'V'));
  QUANTITIES.forEach((quantity, number) => {
    for (let lane = 1; lane <= port.type.lanes; ++lane) {
      const value = port[quantity.key]?.[lane - 1] ?? undefined;
      const format = (v) => shown(quantity.of(v), quantity.decimals, quantity.unit);
      const name = `${quantity.name}, lane ${lane}`;
      add(2 + number * MAX_LANES + lane - 1, name, quantity, value, format, lane);
    }
  });
  for (const [name, place, unit, value, thresholds, latched] of port.observables ?? []) {
    const format = (v) => `${Number(v.toPrecision(6))} ${unit}`;
    const title = place ? `${name}, ${place}` : name;
    const moved = observableChange(port, name, place, value);
    const change = moved === undefined ? moved : (moved > 0 ? '+' : '') + format(moved);
    rows.push(readingRow(title, value ?? undefined, thresholds, latched, format, 0, '–', change));
  }
  return rows;
}

function grid(headings, rows) {
  const head = el('tr', {}, ...headings.map((name) => el('th', { scope: 'col' }, name)));
  const table = el('table', {}, el('thead', {}, head), el('tbody', {}, ...rows));
  return el('div', { class: 'scroll', tabindex: 0 }, table);
}

const LANE_COLUMNS = (port) => Array.from({ length: port.type.lanes }, (_, index) => index + 1);

function laneRow(port, name, of) {
  const cells = LANE_COLUMNS(port).map((lane) => of(lane) ?? '–');
  if (cells.every((cell) => cell === '–')) return [];
  return [
    el(
      'tr',
      {},
      el('th', { scope: 'row' }, name),
      ...cells.map((cell) => el('td', {}, String(cell))),
    ),
  ];
}

function laneRows(port) {
  const flagRows = LANE_FLAGS.flatMap((name, flag) => {
    const [knownBits, raised] = data.flags[port.flags].lanes[flag];
    const bit = (bits, lane) => (bits >> (lane - 1)) & 1;
    return laneRow(port, name, (lane) =>
      bit(knownBits, lane) ? (bit(raised, lane) ? 'raised' : 'no') : null,
    );
  });
  const controls = data.controls[port.controls];
  const names = controls.length > 0 ? Object.keys(controls[0].controls) : [];
  const controlRows = names.flatMap((name) =>
    laneRow(port, controlName(name), (lane) => onOff(controls[lane - 1]?.controls[name])),
  );
  return [...flagRows, ...controlRows];
}

// "rx_output_disable" is "RX output disable".
const controlName = (key) =>
  key.replaceAll('_', ' ').replace(/\b(rx|tx|cdr|eq)\b/g, (word) => word.toUpperCase());
const onOff = (value) => (value === true ? 'on' : value === false ? 'off' : value);

function openPort(port) {
  const dialog = byId('port');
  const order = sorted();
  const at = order.indexOf(port);
  const turn = (name, next) => {
    const button = el('button', { type: 'button', click: () => openPort(next) }, name);
    button.disabled = !next;
    return button;
  };
  const close = el('button', { type: 'button', click: () => dialog.close() }, 'Close');
  const fact = ([name, value]) => el('div', {}, el('dt', {}, name), el('dd', {}, String(value)));
  const lanes = laneRows(port);
  dialog.replaceChildren(
    el(
      'div',
      { class: 'tools' },
      turn('Previous', order[at - 1]),
      turn('Next', order[at + 1]),
      close,
    ),
    el('h2', { id: 'port-title' }, port.name),
    badge(port.verdict),
    el('h3', {}, 'Findings'),
    ...(port.findings.length > 0 ? port.findings.map(findingLine) : ['No findings.']),
    el('h3', {}, 'Cable'),
    el('dl', {}, ...facts(port).map(fact)),
    el('h3', {}, 'Readings'),
    grid(
      ['Reading', 'Value', ...(hasEarlier ? ['Change'] : []), ...BOUNDS, 'Latched'],
      readingRows(port),
    ),
  );
  if (lanes.length > 0) {
    dialog.append(el('h3', {}, 'Flags and settings by lane'));
    dialog.append(grid(['', ...LANE_COLUMNS(port).map((lane) => `Lane ${lane}`)], lanes));
  }
  if (!dialog.open) dialog.showModal();
  dialog.scrollTop = 0;
}

function findingLine(finding) {
  const rule = el('span', { class: 'muted mono' }, ` ${finding.name}`);
  return el('p', { class: `why ${VERDICTS[finding.severity]}` }, finding.sentence, rule);
}

// ---------------------------------------------------------------------------------------------
// The page
// ---------------------------------------------------------------------------------------------

function start() {
  const input = data.input === '<stdin>' ? 'standard input' : data.input;
  document.title = `Cables of ${input}`;
  document.querySelector('h1').textContent = document.title;
  const bad = (verdictCounts.get(3) ?? 0) + (verdictCounts.get(2) ?? 0);
  const ports = counted(data.ports.length, 'port');
  const taken = data.taken_at ? `, as of ${timeText(data.taken_at)}` : '';
  byId('about').textContent =
    `${ports}${taken}, ${bad === 0 ? 'none' : bad.toLocaleString('en')} with something wrong.`;
  byId('written').textContent =
    `Written by cableinfo ${data.version} on ${timeText(data.written_at)}.`;

  const SETTLED = 150; // milliseconds without another key
  let timer;
  byId('search').addEventListener('input', ({ target }) => {
    clearTimeout(timer);
    timer = setTimeout(() => {
      state.words = target.value.toLowerCase().split(/\s+/).filter(Boolean);
      select();
    }, SETTLED);
  });
  byId('more').addEventListener('click', () => {
    state.showsAll = true;
    showWorst();
  });
  byId('port').addEventListener('click', ({ target, currentTarget }) => {
    if (target === currentTarget) currentTarget.close(); // outside of its content
  });
  for (const [event, isPrinting] of [
    ['beforeprint', true],
    ['afterprint', false],
  ]) {
    addEventListener(event, () => {
      state.isPrinting = isPrinting;
      document.documentElement.classList.toggle('printing', isPrinting);
      show();
    });
  }
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', showPlots);
  Chart.defaults.font.family = getComputedStyle(document.body).fontFamily;
  select();
}

start();
