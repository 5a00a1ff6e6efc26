'use strict';

// Tables and functions of the schema public over HTTP, with PostgREST's words and semantics. Who may see or change what
// is not decided here: every request runs as the role of the public key, and the policies of the database decide.

const { ApiError } = require('./ApiError');
const { RestQuery, kRowLimit, quoted } = require('./RestQuery');

const kColumns = `
  select class.relname as table, attribute.attname as column, format_type(attribute.atttypid, null) as type,
         coalesce(attribute.attnum = any (key.conkey), false) as is_key
  from pg_attribute as attribute
  join pg_class as class on class.oid = attribute.attrelid and class.relkind = 'r'
  left join pg_constraint as key on key.conrelid = class.oid and key.contype = 'p'
  where class.relnamespace = 'public'::regnamespace and attribute.attnum > 0 and not attribute.attisdropped
  order by attribute.attnum`;
const kArguments = `
  select proname as function, argument.name, format_type(argument.type, null) as type
  from pg_proc, unnest(proargnames, proargtypes::oid[]) as argument(name, type)
  where pronamespace = 'public'::regnamespace and argument.type is not null`;
const kAnswer = `coalesce(json_agg(answer), '[]')::text as body, count(*)::integer as rows`;

class RestApi {
  #database;
  #tables;
  #functions;

  static async over(database) {
    const api = new RestApi();
    api.#database = database;
    api.#tables = grouped((await database.query(kColumns)).rows, (row) => row.table);
    api.#functions = grouped((await database.query(kArguments)).rows, (row) => row.function);
    return api;
  }

  /** Runs `work` as one transaction of the role of the public key that sees the headers of the request. */
  async asAnonymous(request, work) {
    const settings = {
      search_path: 'public, extensions',
      'request.method': request.method,
      'request.path': request.url.pathname,
      'request.headers': JSON.stringify(request.headers),
      'request.jwt.claims': '{"role":"anon"}',
      role: 'anon',
    };
    const calls = Object.keys(settings).map((_, i) => `set_config($${2 * i + 1}, $${2 * i + 2}, true)`);
    try {
      return await this.#database.transaction(async (transaction) => {
        await transaction.query(`select ${calls.join(', ')}`, Object.entries(settings).flat());
        return work(transaction);
      });
    } catch (error) {
      throw error instanceof ApiError || !error.code ? error : ApiError.fromDatabase(error);
    }
  }

  async handle(request) {
    const [, functionName] = /^\/rest\/v1\/rpc\/(\w+)$/.exec(request.url.pathname) ?? [];
    if (functionName) {
      return this.#call(functionName, request);
    }
    const table = request.url.pathname.replace('/rest/v1/', '');
    if (!this.#tables.has(table)) {
      throw new ApiError(404, 'PGRST205', `Could not find the table 'public.${table}' in the schema cache`);
    }
    const query = new RestQuery(request.url.searchParams);
    switch (request.method) {
      case 'GET':
        return this.#read(table, query, request);
      case 'POST':
        return this.#write(table, query, request);
      case 'DELETE':
        return this.#remove(table, query, request);
      default:
        throw new ApiError(405, 'PGRST117', `Unsupported HTTP method: ${request.method}`);
    }
  }

  async #read(table, query, request) {
    preferences(request, []);
    const { offset, limit } = query.window(request.headers.range);
    const rows = `select * from public.${quoted(table)}${query.where()}${query.orderBy()}`;
    const sql = `select ${kAnswer} from (${rows} limit ${limit} offset ${offset}) as answer`;
    return rowsAnswer(await this.asAnonymous(request, (db) => db.query(sql, query.values)), offset);
  }

  async #write(table, query, request) {
    const isUpsert = preferences(request, ['resolution=merge-duplicates']).length > 0;
    const records = jsonOf(request, (value) => typeof value === 'object' && value !== null);
    const list = Array.isArray(records) ? records : [records];
    const columns = this.#writtenColumns(table, query, list);
    if (columns.length === 0) {
      return { status: 201, headers: { 'Content-Range': '*/*' }, body: '' };
    }
    const names = columns.map(({ column }) => quoted(column)).join(', ');
    const typed = columns.map(({ column, type }) => `${quoted(column)} ${type}`).join(', ');
    const keys = this.#tables.get(table).filter((column) => column.is_key);
    const merge =
      ` on conflict (${keys.map(({ column }) => quoted(column)).join(', ')}) do update set ` +
      columns.map(({ column }) => `${quoted(column)} = excluded.${quoted(column)}`).join(', ');
    const sql =
      `insert into public.${quoted(table)} (${names}) select ${names} from json_to_recordset($1) as _ (${typed})` +
      (isUpsert ? merge : '');
    const text = Array.isArray(records) ? request.text : `[${request.text}]`;
    await this.asAnonymous(request, (db) => db.query(sql, [text]));
    return { status: 201, headers: { 'Content-Range': '*/*' }, body: '' };
  }

  #writtenColumns(table, query, list) {
    const keys = query.columns() ?? Object.keys(list[0] ?? {});
    const isUniform = (record) => Object.keys(record).length === keys.length && keys.every((key) => key in record);
    if (!query.columns() && !list.every(isUniform)) {
      throw new ApiError(400, 'PGRST102', 'All object keys must match');
    }
    return keys.map((key) => {
      const column = this.#tables.get(table).find((candidate) => candidate.column === key);
      if (!column) {
        const message = `Could not find the '${key}' column of '${table}' in the schema cache`;
        throw new ApiError(400, 'PGRST204', message);
      }
      return column;
    });
  }

  async #remove(table, query, request) {
    preferences(request, []);
    if (query.conditions.length === 0) {
      throw new ApiError(400, '21000', 'DELETE requires a WHERE clause');
    }
    const sql = `delete from public.${quoted(table)}${query.where()}`;
    await this.asAnonymous(request, (db) => db.query(sql, query.values));
    return { status: 204, headers: { 'Content-Range': '*/*' }, body: '' };
  }

  async #call(name, request) {
    if (request.method !== 'POST') {
      throw new ApiError(405, 'PGRST101', `Cannot use the ${request.method} method on RPC`);
    }
    const given = Object.keys(jsonOf(request, (value) => typeof value === 'object' && value !== null));
    const parameters = this.#functions.get(name) ?? [];
    if (parameters.length === 0 || parameters.map((p) => p.name).sort().join() !== given.sort().join()) {
      const message = `Could not find the function public.${name}(${given.join(', ')}) in the schema cache`;
      throw new ApiError(404, 'PGRST202', message);
    }
    const typed = parameters.map((p) => `${quoted(p.name)} ${p.type}`).join(', ');
    const passed = parameters.map((p) => `${quoted(p.name)} => given.${quoted(p.name)}`).join(', ');
    const call = `json_to_record($1) as given (${typed}), public.${quoted(name)}(${passed}) as result`;
    const sql = `select ${kAnswer} from (select result.* from ${call} limit ${kRowLimit}) as answer`;
    return rowsAnswer(await this.asAnonymous(request, (db) => db.query(sql, [request.text])), 0);
  }
}

function grouped(rows, keyOf) {
  const groups = new Map();
  for (const row of rows) {
    groups.set(keyOf(row), [...(groups.get(keyOf(row)) ?? []), row]);
  }
  return groups;
}

/** Those of `known` that the request asks for. An answer that looks right without what was asked for would hide it. */
function preferences(request, known) {
  const asked = (request.headers.prefer ?? '').split(',').map((text) => text.trim());
  const unknown = asked.filter((text) => !['', 'return=minimal', ...known].includes(text));
  if (unknown.length > 0) {
    throw new ApiError(501, 'LOOPBACK', `This gateway does not know the preference ${unknown.join(', ')}`);
  }
  return known.filter((text) => asked.includes(text));
}

function jsonOf(request, isRight) {
  const type = request.headers['content-type'] ?? 'application/json';
  if (!type.startsWith('application/json')) {
    throw new ApiError(415, 'PGRST102', `Content-Type not acceptable: ${type}`);
  }
  let value;
  try {
    value = JSON.parse(request.text);
  } catch {
    throw new ApiError(400, 'PGRST102', 'Empty or invalid json');
  }
  if (!isRight(value)) {
    throw new ApiError(400, 'PGRST102', 'Empty or invalid json');
  }
  return value;
}

function rowsAnswer(result, offset) {
  const { body, rows } = result.rows[0];
  const range = rows === 0 ? '*/*' : `${offset}-${offset + rows - 1}/*`;
  return { status: 200, headers: { 'Content-Type': 'application/json; charset=utf-8', 'Content-Range': range }, body };
}

module.exports = { RestApi };
