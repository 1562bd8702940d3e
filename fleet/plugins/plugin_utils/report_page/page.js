// SPDX-License-Identifier: Apache-2.0
'use strict';

// Each text in Chinese and in English.
const texts = {
    title: ['主机策略报告', 'Host policies'],
    hosts: ['主机', 'Hosts'],
    host: ['主机', 'Host'],
    state: ['状态', 'State'],
    framework: ['框架', 'Framework'],
    differences: ['差异', 'Differences'],
    tampered_files: ['被篡改的文件', 'Tampered files'],
    tampered_count: ['篡改', 'Tampered'],
    modules: ['各模块的主机数', 'Hosts by modules'],
    common: ['最常见的差异', 'Most common differences'],
    search: ['查找', 'Find'],
    search_hint: ['主机、文件、软件包……', 'host, file, package…'],
    caption: ['每台主机的状态、模块、差异和被篡改的文件。列标题可用于排序。',
        'State, modules, differences and tampered files of each host. The headings sort.'],
    nothing: ['没有符合条件的主机。', 'No host fits.'],
    conditions: ['按情况筛选', 'Filter by condition'],

    all: ['全部主机', 'hosts'],
    order: ['正常', 'in order'],
    restart: ['待重启', 'awaiting restart'],
    drift: ['有差异', 'drifted'],
    tampered: ['被篡改', 'tampered'],
    unreachable: ['无法连接', 'unreachable'],
    failed: ['失败', 'failed'],

    add: ['缺少', 'missing'],
    remove: ['多余', 'beyond the document'],
    update: ['不同', 'changed'],
    to_be: ['，应为 ', ', to be '],
    undeclared: ['没有声明文档，未作比较', 'nothing is declared, so nothing is compared'],
    restart_needed: ['文档在重启后才能完全生效。', 'The document needs a restart to take effect.'],
    refused: ['文档在此主机上会被拒绝', 'The document would be refused'],
    no_answer: ['主机没有回答。', 'The host gave no answer.'],
    filtered: ['筛选条件：', 'Filter: '],
};

// The words of a policy, likewise.
const words = {
    on: ['开', 'on'],
    off: ['关', 'off'],
    warning: ['告警', 'warning'],
    enabled: ['已开启', 'enabled'],
    permissive: ['宽松', 'permissive'],
    disabled: ['已关闭', 'disabled'],
    intact: ['完好', 'intact'],
    tampered: ['被篡改', 'tampered'],
    allow: ['允许', 'allow'],
    deny: ['阻止', 'deny'],
    unknown: ['未知', 'unknown'],
};

// Texts with a number, in Chinese and in English.
const counted_texts = {
    shown: [(some, all) => some === all ? `${all} 台` : `${some} / ${all} 台`,
        (some, all) => some === all ? `${all}` : `${some} of ${all}`],
    on_hosts: [count => `${count} 台主机`, count => `on ${count} ${count === '1' ? 'host' : 'hosts'}`],
    more: [count => `另有 ${count} 项`, count => `and ${count} more`],
};

const modules = ['exec', 'exec script', 'net', 'kmod', 'file', 'proc', '3adm', 'box'];
const module_words = ['on', 'warning', 'off'];
const framework_words = ['enabled', 'permissive', 'disabled'];
// The worst comes first.
const conditions = ['failed', 'unreachable', 'tampered', 'drift', 'restart', 'order'];
const number_formats = {zh: new Intl.NumberFormat('zh'), en: new Intl.NumberFormat('en')};
const signs = {add: '+', remove: '−', update: '~'};
const most_lines_in_print = 40;

const data = JSON.parse(find('data').textContent);
const differences = data.differences.map(read_difference);
const hosts = data.hosts.map(read_host);
const columns = make_columns();
const view = {language: data.language, condition: 'all', search: '', column: 'state', descending: false};
const rows = new Map();
const open_hosts = new Set();

function find(id) {
    return document.getElementById(id);
}

function choose([chinese, english]) {
    return view.language === 'zh' ? chinese : english;
}

function text(key) {
    return choose(texts[key]);
}

function format_number(number) {
    return number_formats[view.language].format(number);
}

function counted_text(key, ...numbers) {
    return choose(counted_texts[key])(...numbers.map(format_number));
}

// Makes an element with a class, where one is given, and with texts or elements in it.
function make(tag, kind, ...content) {
    const element = document.createElement(tag);
    if (kind) {
        element.className = kind;
    }
    element.append(...content);
    return element;
}

function read_difference([change, place, name, host, wanted]) {
    const fields = place.split('/').slice(1).map(field => field.replaceAll('~1', '/').replaceAll('~0', '~'));
    return {change, fields, name, host, wanted, hosts: 0};
}

function read_host(host) {
    const read = {tampered: [], refused: [], modules: {}, message: '', ...host};
    const drift = new Set((host.drift ?? []).map(number => differences[number]));
    drift.forEach(difference => difference.hosts += 1);
    read.conditions = conditions.filter(condition => ({
        failed: host.problem === 'failed',
        unreachable: host.problem === 'unreachable',
        tampered: read.tampered.length > 0,
        drift: drift.size > 0,
        restart: host.restart,
    }[condition]));
    if (read.conditions.length === 0) {
        read.conditions.push('order');
    }
    return {...read, is_compared: Boolean(host.drift), drift: [...drift]};
}

function has_details(host) {
    return host.conditions[0] !== 'order';
}

// Bytes in the notation of the documents, so that nothing in a name acts or hides.
function escape_character(character) {
    return [...new TextEncoder().encode(character)].map(byte => '\\x' + byte.toString(16).padStart(2, '0')).join('');
}

// Makes the element for a name, in which characters that do not print are shown.
function make_name(name) {
    const element = make('bdi', 'name');
    for (const piece of name.split(/([\p{C}\p{Zl}\p{Zp}]+)/u)) {
        const is_hidden = /^[\p{C}\p{Zl}\p{Zp}]/u.test(piece);
        element.append(is_hidden ? make('span', 'escaped', escape_character(piece)) : piece);
    }
    return element;
}

function make_badge(condition) {
    return make('span', 'badge ' + condition, text(condition));
}

function make_word(word) {
    if (!word) {
        return make('span', 'none', '–');
    }
    return Object.hasOwn(words, word) ? make('span', 'word ' + word, choose(words[word])) : make_name(word);
}

// Makes what tells how many there are, or that nobody knows.
function make_count(list, is_known) {
    if (list.length > 0) {
        return format_number(list.length);
    }
    return make('span', 'none', is_known ? '0' : '–');
}

// A column: its key, its heading, what a host is sorted by, and what its cell holds.
function make_columns() {
    const rank = (words, word) => word ? words.indexOf(word) : words.length;
    return [
        {key: 'host', heading: () => text('host'), rank: () => 0, show: make_host_name},
        {
            key: 'state', heading: () => text('state'), rank: host => conditions.indexOf(host.conditions[0]),
            show: host => make('span', 'badges', ...host.conditions.map(make_badge)),
        },
        {
            key: 'framework', heading: () => text('framework'), rank: host => rank(framework_words, host.framework),
            show: host => make_word(host.framework),
        },
        ...modules.map(module => ({
            key: module, heading: () => module, rank: host => rank(module_words, host.modules[module]),
            show: host => make_word(host.modules[module]),
        })),
        {
            key: 'drift', is_number: true, heading: () => text('differences'),
            rank: host => host.is_compared ? -host.drift.length : 1,
            show: host => make_count(host.drift, host.is_compared),
        },
        {
            key: 'tampered', is_number: true, heading: () => text('tampered_count'),
            rank: host => host.problem ? 1 : -host.tampered.length,
            show: host => make_count(host.tampered, !host.problem),
        },
    ];
}

function make_host_name(host) {
    if (!has_details(host)) {
        return make('span', 'host', make_name(host.name));
    }
    const button = make('button', 'host', make_name(host.name));
    button.type = 'button';
    button.setAttribute('aria-expanded', 'false');
    button.addEventListener('click', () => toggle_details(host));
    return button;
}

// Makes the row of a host. The roles are for the narrow layout, in which it is no row of a table to the browser.
function make_row(host) {
    const row = make('tr', has_details(host) ? 'troubled' : '');
    row.setAttribute('role', 'row');
    for (const column of columns) {
        const is_host = column.key === 'host';
        const cell = make(is_host ? 'th' : 'td', '', column.show(host));
        cell.setAttribute('role', is_host ? 'rowheader' : 'cell');
        if (is_host) {
            cell.scope = 'row';
        } else {
            cell.dataset.label = column.heading();
        }
        cell.classList.toggle('number', Boolean(column.is_number));
        cell.classList.toggle('empty', cell.querySelector('.none') !== null);
        row.append(cell);
    }
    return row;
}

function make_difference(difference) {
    const sign = make('span', 'sign', signs[difference.change]);
    sign.title = text(difference.change);
    const line = make('span', 'difference ' + difference.change, sign, make('span', 'unseen', text(difference.change)));
    difference.fields.forEach(field => line.append(make('span', 'place', make_name(field), ' › ')));
    line.append(make_name(difference.name));
    if (difference.host && difference.wanted) {
        line.append(' ', make_word(difference.host), text('to_be'), make_word(difference.wanted));
    } else if (difference.host || difference.wanted) {
        line.append(' ', make_word(difference.host || difference.wanted));
    }
    return line;
}

// Makes a heading and a list of at most so many lines.
function make_lines(heading, lines, make_line, most) {
    const list = make('ul', 'lines', ...lines.slice(0, most).map(line => make('li', '', make_line(line))));
    if (lines.length > most) {
        list.append(make('li', 'more', counted_text('more', lines.length - most)));
    }
    return make('div', 'part', make('h3', '', heading), list);
}

function make_details(host, most) {
    const cell = make('td', '');
    cell.colSpan = columns.length;
    cell.setAttribute('role', 'cell');
    if (host.problem) {
        cell.append(...(host.message || text('no_answer')).split('\n').map(line => make('p', '', make_name(line))));
    }
    if (host.restart) {
        cell.append(make('p', '', text('restart_needed')));
    }
    if (host.refused.length > 0) {
        cell.append(make_lines(text('refused'), host.refused, make_name, most));
    }
    if (host.tampered.length > 0) {
        cell.append(make_lines(text('tampered_files'), host.tampered, make_name, most));
    }
    if (host.drift.length > 0) {
        cell.append(make_lines(text('differences'), host.drift, make_difference, most));
    } else if (!host.is_compared && !host.problem) {
        cell.append(make('p', 'none', text('undeclared')));
    }
    const row = make('tr', 'details', cell);
    row.setAttribute('role', 'row');
    return row;
}

function toggle_details(host) {
    const is_open = !open_hosts.delete(host);
    if (is_open) {
        open_hosts.add(host);
        rows.get(host).after(make_details(host, Infinity));
    } else {
        rows.get(host).nextElementSibling.remove();
    }
    mark_open(host, is_open);
}

function mark_open(host, is_open) {
    rows.get(host).querySelector('button')?.setAttribute('aria-expanded', String(is_open));
}

function list_shown_hosts() {
    const search = view.search.trim().toLowerCase();
    const contains = name => name.toLowerCase().includes(search);
    const found = new Set(differences.filter(difference => contains(difference.name) || difference.fields.some(contains)));
    return hosts.filter(host => view.condition === 'all' || host.conditions.includes(view.condition))
        .filter(host => contains(host.name) || contains(host.message) || host.refused.some(contains) ||
            host.tampered.some(contains) || host.drift.some(difference => found.has(difference)));
}

function sort_hosts(list) {
    const by_name = new Intl.Collator(view.language, {numeric: true});
    const {rank} = columns.find(column => column.key === view.column);
    const direction = view.descending ? -1 : 1;
    const compare = (one, other) => direction * (rank(one) - rank(other) || by_name.compare(one.name, other.name));
    return list.sort(compare);
}

// Shows the hosts that fit, those of them opened that are to be, with at most so many lines in a list.
function show_rows(is_open = host => open_hosts.has(host), most = Infinity) {
    const shown = sort_hosts(list_shown_hosts());
    const fragment = document.createDocumentFragment();
    for (const host of shown) {
        fragment.append(rows.get(host));
        if (is_open(host)) {
            fragment.append(make_details(host, most));
        }
        mark_open(host, is_open(host));
    }
    find('rows').replaceChildren(fragment);
    find('nothing').hidden = shown.length > 0;
    find('count').textContent = counted_text('shown', shown.length, hosts.length);
}

function show_columns() {
    find('columns').replaceChildren(...columns.map(column => {
        const button = make('button', '', column.heading());
        button.type = 'button';
        button.addEventListener('click', () => sort_by(column.key));
        const cell = make('th', column.is_number ? 'number' : '', button);
        cell.scope = 'col';
        cell.setAttribute('role', 'columnheader');
        cell.dataset.column = column.key;
        return cell;
    }));
    mark_sorted_column();
}

function mark_sorted_column() {
    for (const cell of find('columns').children) {
        const is_sorted = cell.dataset.column === view.column;
        cell.setAttribute('aria-sort', !is_sorted ? 'none' : view.descending ? 'descending' : 'ascending');
    }
}

function sort_by(key) {
    view.descending = key === view.column && !view.descending;
    view.column = key;
    mark_sorted_column();
    show_rows();
}

function count_hosts(condition) {
    return hosts.filter(host => host.conditions.includes(condition)).length;
}

function show_tiles() {
    const tiles = [['all', hosts.length], ...[...conditions].reverse().map(condition => [condition, count_hosts(condition)])];
    find('tiles').setAttribute('aria-label', text('conditions'));
    find('tiles').replaceChildren(...tiles.map(([condition, count]) => {
        const tile = make('button', 'tile ' + condition, make('strong', '', format_number(count)), make('span', '', text(condition)));
        tile.type = 'button';
        tile.dataset.condition = condition;
        tile.classList.toggle('zero', count === 0);
        tile.addEventListener('click', () => filter_by(condition));
        return tile;
    }));
    mark_chosen_tile();
    find('share').replaceChildren(...make_shares([...conditions].reverse(), host => host.conditions[0]));
}

// Makes a piece of a bar for each kind, as long as there are hosts of it.
function make_shares(kinds, tell_kind) {
    const counts = kinds.map(kind => [kind, hosts.filter(host => tell_kind(host) === kind).length]);
    return counts.filter(([, count]) => count > 0).map(([kind, count]) => {
        const share = make('span', kind);
        share.style.flexGrow = count;
        return share;
    });
}

function mark_chosen_tile() {
    for (const tile of find('tiles').children) {
        tile.setAttribute('aria-pressed', String(tile.dataset.condition === view.condition));
    }
}

function filter_by(condition) {
    view.condition = condition === view.condition ? 'all' : condition;
    mark_chosen_tile();
    show_rows();
}

function show_modules() {
    find('modules').replaceChildren(...modules.map(module => {
        const counts = module_words.map(word => [word, hosts.filter(host => host.modules[module] === word).length]);
        const bar = make('div', 'share', ...make_shares([...module_words, undefined], host => host.modules[module]));
        bar.setAttribute('aria-hidden', 'true');
        const told_counts = counts.filter(([word, count]) => count > 0 || word === 'on')
            .map(([word, count]) => make('span', '', `${choose(words[word])} ${format_number(count)}`));
        return make('li', '', make('strong', '', module), bar, make('span', 'words', ...told_counts));
    }));
}

function show_common_differences() {
    const common = differences.filter(difference => difference.hosts > 1)
        .sort((one, other) => other.hosts - one.hosts).slice(0, 5);
    find('common_section').hidden = common.length === 0;
    find('common').replaceChildren(...common.map(difference =>
        make('li', '', make_difference(difference), ' ', make('span', 'on_hosts', counted_text('on_hosts', difference.hosts)))));
}

function show_language() {
    document.documentElement.lang = view.language === 'zh' ? 'zh-CN' : 'en';
    document.title = text('title');
    for (const element of document.querySelectorAll('[data-text]')) {
        element.textContent = text(element.dataset.text);
    }
    find('search').placeholder = text('search_hint');
    const format = new Intl.DateTimeFormat(document.documentElement.lang, {dateStyle: 'long', timeStyle: 'long'});
    find('time').textContent = format.format(new Date(data.time));
    for (const button of find('languages').children) {
        button.setAttribute('aria-pressed', String(button.dataset.language === view.language));
    }
}

function show_page() {
    show_language();
    show_tiles();
    show_modules();
    show_common_differences();
    show_columns();
    rows.clear();
    hosts.forEach(host => rows.set(host, make_row(host)));
    show_rows();
}

function choose_language(language) {
    view.language = language;
    show_page();
}

// On paper nothing can be opened, and no control tells what was filtered.
function prepare_print() {
    show_rows(has_details, most_lines_in_print);
    const filters = [view.condition === 'all' ? '' : text(view.condition), view.search.trim()].filter(Boolean);
    if (filters.length > 0) {
        find('count').append(' – ', text('filtered'), filters.join(', '));
    }
}

for (const button of find('languages').children) {
    button.addEventListener('click', () => choose_language(button.dataset.language));
}
find('search').addEventListener('input', event => {
    view.search = event.target.value;
    show_rows();
});
addEventListener('beforeprint', prepare_print);
addEventListener('afterprint', () => show_rows());
show_page();
