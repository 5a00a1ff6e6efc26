'use strict';

// Uploading a file into a bucket, with the storage service's words. The bucket's limits are this service's to check;
// who may put what where is decided by the policies of the database.

const { ApiError } = require('./ApiError');

class StorageApi {
  constructor(database, rest) {
    this.database = database;
    this.rest = rest;
  }

  async handle(request) {
    const [, bucketName, name] = /^\/storage\/v1\/object\/([^/]+)\/(.+)$/.exec(request.url.pathname) ?? [];
    if (!name || request.method !== 'POST') {
      return refusal(404, 'not_found', `Route ${request.method}:${request.url.pathname} not found`);
    }
    const limits = await this.database.query('select * from storage.buckets where id = $1', [bucketName]);
    const bucket = limits.rows[0];
    const type = request.headers['content-type'] ?? 'application/octet-stream';
    if (!bucket) {
      return refusal(404, 'Bucket not found', 'Bucket not found');
    }
    if (bucket.allowed_mime_types && !bucket.allowed_mime_types.includes(type)) {
      return refusal(415, 'invalid_mime_type', `mime type ${type} is not supported`);
    }
    if (bucket.file_size_limit && request.body.length > bucket.file_size_limit) {
      return refusal(413, 'Payload too large', 'The object exceeded the maximum allowed size');
    }
    const row = [bucketName, decodeURIComponent(name), JSON.stringify({ size: request.body.length, mimetype: type })];
    const sql = 'insert into storage.objects (bucket_id, name, metadata) values ($1, $2, $3)';
    try {
      await this.rest.asAnonymous(request, (db) => db.query(sql, row));
    } catch (error) {
      if (!(error instanceof ApiError)) {
        throw error;
      }
      return error.body.code === '23505'
        ? refusal(409, 'Duplicate', 'The resource already exists')
        : refusal(403, 'Unauthorized', error.message);
    }
    return json(200, { Key: `${bucketName}/${name}` });
  }
}

function json(status, value) {
  return { status, headers: { 'Content-Type': 'application/json; charset=utf-8' }, body: JSON.stringify(value) };
}

/** The service answers 400 to whatever it refuses, and names the real status in the body. */
function refusal(statusCode, error, message) {
  return json(400, { statusCode: String(statusCode), error, message });
}

module.exports = { StorageApi };
