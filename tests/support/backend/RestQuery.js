'use strict';

// The query of an address, as PostgREST reads it: `column=operator.value`, `order`, `limit`, `offset`. Only what this
// program asks for; anything else is refused, so that no test passes by a filter that was not looked at.

const { ApiError } = require('./ApiError');

const kRowLimit = 1000;
const kComparisons = { eq: '=', gt: '>' };
const kOthers = ['select', 'order', 'limit', 'offset', 'columns'];

function quoted(name) {
  return `"${name.replaceAll('"', '""')}"`;
}

function unreadable(what, text) {
  const message = `"failed to parse ${what} (${text})" (line 1, column 1)`;
  return new ApiError(400, 'PGRST100', message, { details: `unexpected "${text.slice(0, 20)}"` });
}

class RestQuery {
  constructor(searchParams) {
    this.values = [];
    this.conditions = [];
    this.others = {};
    for (const [name, text] of searchParams) {
      if (kOthers.includes(name)) {
        this.others[name] = text;
      } else {
        this.conditions.push(this.#condition(name, text));
      }
    }
    if (!['*', undefined].includes(this.others.select)) {
      throw unreadable('select parameter', this.others.select);
    }
  }

  #condition(column, text) {
    const [, operator, value] = /^([a-z]+)\.(.*)$/s.exec(text) ?? [];
    if (operator === 'is' && value.toLowerCase() === 'null') {
      return `${quoted(column)} is null`;
    }
    if (!(operator in kComparisons)) {
      throw unreadable('filter', text);
    }
    this.values.push(value);
    return `${quoted(column)} ${kComparisons[operator]} $${this.values.length}`;
  }

  where() {
    return this.conditions.length > 0 ? ` where ${this.conditions.join(' and ')}` : '';
  }

  orderBy() {
    const terms = (this.others.order ?? '').split(',').filter((term) => term !== '');
    const sql = terms.map((term) => {
      const [, column, direction = 'asc'] = /^(\w+)(?:\.(asc|desc))?$/.exec(term) ?? [];
      if (!column) {
        throw unreadable('order', term);
      }
      return `${quoted(column)} ${direction}`;
    });
    return sql.length > 0 ? ` order by ${sql.join(', ')}` : '';
  }

  /** The columns that a write names, when it names them: those of all its records together. */
  columns() {
    return this.others.columns?.split(',').map((name) => name.replace(/^"(.*)"$/, '$1'));
  }

  /** The rows that are wanted: of the address, else of the Range header, never more than the limit. */
  window(rangeHeader) {
    const [, first = '0', last = ''] = /^(\d+)-(\d*)$/.exec(rangeHeader ?? '') ?? [];
    let offset = Number(first);
    let limit = last === '' ? kRowLimit : Number(last) - offset + 1;
    if (this.others.limit !== undefined || this.others.offset !== undefined) {
      offset = this.#count('offset', 0);
      limit = this.#count('limit', kRowLimit);
    }
    if (limit < 0) {
      throw new ApiError(416, 'PGRST103', 'Requested range not satisfiable', {
        details: 'The lower boundary must be lower than or equal to the upper boundary in the Range header.',
      });
    }
    return { offset, limit: Math.min(limit, kRowLimit) };
  }

  #count(name, otherwise) {
    const text = this.others[name];
    if (text === undefined) {
      return otherwise;
    }
    if (!/^\d+$/.test(text)) {
      throw unreadable(`${name} parameter`, text);
    }
    return Number(text);
  }
}

module.exports = { RestQuery, kRowLimit, quoted };
