-- Answers to the survey. Everybody may hand one in; only the owner of the database reads them.
create table public.feedback_responses (
  id uuid primary key default gen_random_uuid(),
  created_at timestamptz not null default now(),
  app_version text not null check (char_length(app_version) <= 64),
  -- The chosen options, as they were shown; their wording may change from release to release.
  usage_frequency text not null check (char_length(usage_frequency) <= 200),
  overall_experience text not null check (char_length(overall_experience) <= 200),
  most_used_feature text not null check (char_length(most_used_feature) <= 200),
  blocker text not null check (char_length(blocker) <= 200),
  would_recommend text not null check (char_length(would_recommend) <= 200),
  open_text text not null check (char_length(open_text) <= 100000),
  voice_note_path text check (voice_note_path ~ '^feedback-audio/[0-9A-Fa-f-]{36}\.m4a$')
);
create index feedback_responses_by_time on public.feedback_responses (created_at);

alter table public.feedback_responses enable row level security;
create policy "anybody may answer" on public.feedback_responses for insert to anon with check (true);

revoke all on public.feedback_responses from public;
do $$
declare
  role_name name;
begin
  for role_name in select rolname from pg_catalog.pg_roles where rolname in ('anon', 'authenticated') loop
    execute format('revoke all on public.feedback_responses from %I', role_name);
  end loop;
end
$$;
-- By column: nobody chooses the id or the time of an answer.
grant insert (
  app_version, usage_frequency, overall_experience, most_used_feature, blocker, would_recommend, open_text,
  voice_note_path
) on public.feedback_responses to anon;

-- Voice notes go beside the answers, where the service stores files. A plain Postgres has no such place.
do $$
begin
  if to_regclass('storage.buckets') is null then
    raise notice 'no storage service: voice notes cannot be uploaded';
    return;
  end if;
  insert into storage.buckets (id, name, public, file_size_limit, allowed_mime_types)
  values ('feedback-audio', 'feedback-audio', false, 25 * 1024 * 1024, array['audio/mp4'])
  on conflict (id) do update
  set public = excluded.public,
      file_size_limit = excluded.file_size_limit,
      allowed_mime_types = excluded.allowed_mime_types;
  create policy "anybody may leave a voice note" on storage.objects for insert to anon
  with check (bucket_id = 'feedback-audio' and name ~ '^[0-9A-Fa-f-]{36}\.m4a$');
end
$$;
